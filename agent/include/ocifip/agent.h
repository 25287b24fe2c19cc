// An agent that NETCONF clients configure and watch a device by (RFC 6241), behind a transport that
// tells who they are, such as OpenSSH.
#ifndef OCIFIP_AGENT_H_
#define OCIFIP_AGENT_H_

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>

#include "ocifip/host.h"

namespace ocifip {

// An agent that cannot begin: what it needs of the system is not there.
class AgentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct AgentOptions {
  std::string socket;                         // path of the Unix socket that clients come by
  std::optional<std::string> socket_group{};  // whose members may connect; the process's own group
  bool save = false;                          // changes are written to the device file
  // Who may read, and change nothing: members of a group, and users by name.
  std::optional<std::string> read_only_group{};
  std::set<std::string> read_only_users{};
  std::size_t most_sessions = 64;
  std::size_t longest_message = std::size_t{16} << 20;  // bytes
  // For a hello, for the rest of a message that has begun, and for a client to read.
  std::chrono::seconds patience{60};
};

class Agent {
 public:
  // Takes lines for the log, which begin with their time and have no line feed, from several
  // threads one at a time.
  using Log = std::function<void(const std::string& line)>;

  // Listens from now on. The host outlives the agent, which is the only one to use it: from one
  // thread. Throws AgentError.
  Agent(Host& host, AgentOptions options, Log log);
  ~Agent();
  Agent(const Agent&) = delete;
  Agent& operator=(const Agent&) = delete;

  // Serves clients until stop() is called, and ends their sessions.
  void run();
  // May be called from any thread, and from the handler of a signal.
  void stop() noexcept;

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

// Copies bytes between two file descriptors and an agent's socket until either ends: what a
// transport runs for a client. Throws AgentError.
void relay(const std::string& socket, int in, int out);

}  // namespace ocifip

#endif  // OCIFIP_AGENT_H_
