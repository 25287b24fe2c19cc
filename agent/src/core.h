// What becomes of messages: the agent without sockets and threads.
#ifndef OCIFIP_AGENT_CORE_H_
#define OCIFIP_AGENT_CORE_H_

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "announcements.h"
#include "client.h"
#include "datastores.h"
#include "ocifip/host.h"
#include "operations.h"
#include "step.h"

namespace ocifip::agent {

// Takes lines for the log, without time and line feed.
using Log = std::function<void(const std::string& line)>;

// Does a part of something.
using Work = std::function<Step()>;

// It is used by one thread, the one that enters the plug-in.
class Core {
 public:
  // The host outlives the core.
  Core(Host& host, bool saves, Log log);
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  // Begins a session with a client, who is told so. The peer outlives the session.
  void open(SessionId id, User user, Peer& peer);
  // A session is over. `reason` is for the log: why it could not go on, or "".
  void close(SessionId id, const std::string& reason);

  // Bytes of a session that are no message, which it ends for.
  void refused(SessionId id);

  // A message of a session. Its reply is sent, and the peer resumed, when the work is done; the
  // messages of one session come one after the other.
  Work received(SessionId id, std::string message);

  // When expire() is to be called.
  [[nodiscard]] std::optional<Clock::time_point> deadline() const { return datastores_.deadline(); }
  void expire();

 private:
  class Exchange;
  friend class Exchange;

  void take_hello(Client& client, const xmlNode* message);
  void changed(SessionId by, const Configuration& before, const Configuration& after);
  void notify(const Elements& event);
  [[nodiscard]] std::string path_element(std::string_view name, const std::string& path) const;
  void count_error(Client& client, bool is_rpc);
  [[nodiscard]] const Client* client(SessionId id) const;

  Host& host_;
  Log log_;
  Modules modules_;
  Clients clients_;
  AgentCounters counters_;
  Datastores datastores_;
  Service service_;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_CORE_H_
