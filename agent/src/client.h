// A session as operations see it.
#ifndef OCIFIP_AGENT_CLIENT_H_
#define OCIFIP_AGENT_CLIENT_H_

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "datastores.h"
#include "framing.h"
#include "xml.h"

namespace ocifip::agent {

// Who a session is with.
struct User {
  std::string name;
  bool may_only_read = false;
};

// The way to a client. The functions may be called from any thread.
class Peer {
 public:
  virtual ~Peer() = default;

  virtual void use(Framing framing) = 0;
  // Sends a message, some time.
  virtual void send(std::string message) = 0;
  // The bytes that are still to be sent.
  virtual std::size_t backlog() = 0;
  // The message that came last is dealt with: the next one may come.
  virtual void resume() = 0;
  // Ends the session, with what is still to be sent or at once.
  virtual void end() = 0;
  virtual void abort() = 0;
};

// As RFC 6022 counts.
struct Counters {
  std::uint32_t in_rpcs = 0;
  std::uint32_t in_bad_rpcs = 0;
  std::uint32_t out_rpc_errors = 0;
  std::uint32_t out_notifications = 0;
};

// Of all sessions, those that have ended included.
struct AgentCounters : Counters {
  std::uint32_t in_sessions = 0;
  std::uint32_t in_bad_hellos = 0;
  std::uint32_t dropped_sessions = 0;
};

// What a client wants to be told; what it is chosen by outlives the message that asked for it.
struct Subscription {
  XmlDocument document;
  const xmlNode* filter = nullptr;  // null: everything
};

// How a session ends.
enum class Ending : std::uint8_t { kDropped, kClosed, kKilled };

struct Client {
  SessionId id;
  User user;
  Peer& peer;
  std::chrono::system_clock::time_point login = std::chrono::system_clock::now();
  bool is_open = false;  // its hello has come
  bool has_chunks = false;
  Counters counters{};
  std::optional<Subscription> subscription{};
  Ending ending = Ending::kDropped;  // as long as nothing else is known
  SessionId killed_by = 0;
};

using Clients = std::map<SessionId, Client>;

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_CLIENT_H_
