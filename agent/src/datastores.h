// The running and the candidate configuration, their locks, and the commit that waits to be
// confirmed (RFC 6241, sections 7.5, 8.3 and 8.4).
#ifndef OCIFIP_AGENT_DATASTORES_H_
#define OCIFIP_AGENT_DATASTORES_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ocifip/configuration.h"
#include "ocifip/host.h"

namespace ocifip::agent {

using SessionId = std::uint32_t;  // from 1
using Clock = std::chrono::steady_clock;

enum class Datastore : std::uint8_t { kRunning, kCandidate };

const char* name_of(Datastore datastore);

struct Lock {
  SessionId holder;
  std::chrono::system_clock::time_point since;
};

// What a commit says beside that it is one.
struct CommitTerms {
  bool is_confirmed = false;  // it goes back unless another one confirms it
  std::chrono::seconds timeout{600};
  std::optional<std::string> persist{};     // others may confirm it who know this
  std::optional<std::string> persist_id{};  // what was said of the one to be confirmed
};

// What happens to a confirmed commit.
enum class ConfirmedCommit : std::uint8_t { kStart, kCancel, kTimeout, kExtend, kComplete };

// Who wants to know of changes, after they have happened.
struct DatastoreEvents {
  // The running configuration has become another; by 0 when time did it.
  std::function<void(SessionId by, const Configuration& before, const Configuration& after)>
      changed;
  std::function<void(SessionId by, ConfirmedCommit what, std::chrono::seconds timeout)> confirming;
  // A sentence for the log.
  std::function<void(const std::string& remark)> remarked;
};

// What cannot be done throws OperationError or InputError, and has changed nothing.
class Datastores {
 public:
  // The host outlives this. With `saves` each change of the running configuration is saved, a
  // confirmed commit when it is confirmed.
  Datastores(Host& host, bool saves, DatastoreEvents events);

  [[nodiscard]] Configuration content(Datastore datastore) const;
  [[nodiscard]] const std::optional<Lock>& lock_of(Datastore datastore) const;

  // Refuses when another session is in the way of a change.
  void check_free(Datastore datastore, SessionId by) const;
  void replace(Datastore datastore, const Configuration& content, SessionId by);
  void lock(Datastore datastore, SessionId by);
  void unlock(Datastore datastore, SessionId by);

  // The candidate becomes the running configuration.
  void commit(SessionId by, const CommitTerms& terms);
  // A commit that waits to be confirmed is taken back.
  void cancel(SessionId by, const std::optional<std::string>& persist_id);
  void discard(SessionId by);

  // A session is gone, with its locks and what it did not confirm.
  void end(SessionId session);
  // When expire() is to be called.
  [[nodiscard]] std::optional<Clock::time_point> deadline() const;
  // Takes a commit back that nobody has confirmed in time.
  void expire();

 private:
  struct Waiting {
    Configuration former;
    SessionId by;
    std::optional<std::string> persist;
    Clock::time_point deadline;
  };

  void become(const Configuration& content, SessionId by, bool is_settled);
  void check_unlocked(Datastore datastore, SessionId by) const;
  void take_back(SessionId by, ConfirmedCommit why);
  void check_confirmation(SessionId by, const std::optional<std::string>& persist_id) const;

  Host& host_;
  bool saves_;
  DatastoreEvents events_;
  std::optional<Configuration> candidate_;  // when it is not the running configuration
  std::array<std::optional<Lock>, 2> locks_;
  std::optional<Waiting> waiting_;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_DATASTORES_H_
