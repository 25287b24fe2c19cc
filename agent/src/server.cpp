// Clients come and go: the socket, their sessions, and who they are.
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <pwd.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "core.h"
#include "descriptor.h"
#include "names.h"
#include "ocifip/agent.h"
#include "ocifip/messages.h"
#include "rpc_error.h"
#include "socket_session.h"
#include "unix_socket.h"
#include "worker.h"

namespace ocifip {
namespace {

using agent::Descriptor;

constexpr std::chrono::milliseconds kPause{200};

[[noreturn]] void fail(const std::string& what, int error) {
  throw AgentError(what + ": " + std::strerror(error));
}

gid_t group_of(const std::string& name) {
  const group* found = ::getgrnam(name.c_str());
  if (found == nullptr) throw AgentError("no group " + in_quotes(name));
  return found->gr_gid;
}

// Whether a socket that is there was left behind by an agent that has gone.
bool is_abandoned(const std::string& path) {
  return !agent::connect_to(path) && errno == ECONNREFUSED;
}

// A socket that members of a group may connect to, in the place of one that was left behind.
Descriptor listen_on(const AgentOptions& options) {
  const sockaddr_un address = agent::address_of(options.socket);
  struct stat file {};
  const bool is_there = ::lstat(options.socket.c_str(), &file) == 0;
  if (is_there && (!S_ISSOCK(file.st_mode) || !is_abandoned(options.socket))) {
    throw AgentError(in_quotes(options.socket) +
                     (S_ISSOCK(file.st_mode) ? " is another agent's" : " is no socket"));
  }
  if (is_there) ::unlink(options.socket.c_str());
  Descriptor listener(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!listener) fail("socket", errno);
  // Nobody may connect before the file has its group.
  const mode_t mask = ::umask(0777);
  const int bound =
      ::bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
  const int error = errno;
  ::umask(mask);
  if (bound != 0) fail(in_quotes(options.socket), error);
  if (options.socket_group && ::chown(options.socket.c_str(), static_cast<uid_t>(-1),
                                      group_of(*options.socket_group)) != 0) {
    fail(in_quotes(options.socket), errno);
  }
  if (::chmod(options.socket.c_str(), 0660) != 0) fail(in_quotes(options.socket), errno);
  if (::listen(listener.number(), SOMAXCONN) != 0) fail(in_quotes(options.socket), errno);
  return listener;
}

// Nothing when the system does not tell.
std::optional<std::string> name_of(uid_t user) {
  std::vector<char> buffer(4096);
  passwd entry{};
  passwd* found = nullptr;
  while (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(2 * buffer.size());
  }
  return found == nullptr ? std::nullopt : std::optional<std::string>(found->pw_name);
}

// All groups of the process at the other end; none when the system does not tell.
std::vector<gid_t> groups_of(int socket, gid_t own) {
  std::vector<gid_t> groups(64);
  auto size = static_cast<socklen_t>(groups.size() * sizeof(gid_t));
  int result = ::getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size);
  if (result != 0 && errno == ERANGE) {
    groups.resize(size / sizeof(gid_t));
    result = ::getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, groups.data(), &size);
  }
  if (result != 0) return {};
  groups.resize(std::min<std::size_t>(groups.size(), size / sizeof(gid_t)));
  groups.push_back(own);
  return groups;
}

bool is_in(const std::vector<gid_t>& groups, gid_t group) {
  return std::find(groups.begin(), groups.end(), group) != groups.end();
}

}  // namespace

class Agent::Server {
 public:
  Server(Host& host, AgentOptions options, Log log);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  void run();
  void stop() const noexcept;

 private:
  void write_log(const std::string& line);
  void accept();
  void refuse(const Descriptor& client, const std::string& reason);
  [[nodiscard]] agent::User user_at(const Descriptor& client) const;
  void begin(Descriptor client, const agent::User& user);
  void end(agent::SessionId id, const std::string& reason);
  std::size_t count();

  AgentOptions options_;
  Log log_;
  std::mutex log_mutex_;
  std::optional<gid_t> read_only_group_;
  Descriptor stops_;
  Descriptor listener_;
  struct stat socket_ {};  // as it was bound
  agent::SessionId last_id_ = 0;
  std::mutex mutex_;  // of the sessions
  std::condition_variable is_empty_;
  std::map<agent::SessionId, std::unique_ptr<agent::Session>> sessions_;
  agent::Core core_;
  agent::Worker worker_;
};

Agent::Server::Server(Host& host, AgentOptions options, Log log)
    : options_(std::move(options)),
      log_(std::move(log)),
      read_only_group_(options_.read_only_group ? std::optional(group_of(*options_.read_only_group))
                                                : std::nullopt),
      stops_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      listener_(listen_on(options_)),
      core_(host, options_.save, [this](const std::string& line) { write_log(line); }),
      worker_([this] { return core_.deadline(); }, [this] { core_.expire(); }) {
  if (!stops_) fail("eventfd", errno);
  ::lstat(options_.socket.c_str(), &socket_);
  agent::begin_xml();
  write_log("listening on " + options_.socket);
  if (!options_.read_only_group && options_.read_only_users.empty()) {
    write_log("everybody who may connect may change the configuration");
  }
}

// Another agent's socket may have taken the place.
Agent::Server::~Server() {
  struct stat file {};
  const bool is_there = ::lstat(options_.socket.c_str(), &file) == 0;
  if (is_there && file.st_ino == socket_.st_ino && file.st_dev == socket_.st_dev) {
    ::unlink(options_.socket.c_str());
  }
}

void Agent::Server::write_log(const std::string& line) {
  const std::lock_guard lock(log_mutex_);
  log_(agent::date_and_time(std::chrono::system_clock::now()) + ' ' + line);
}

void Agent::Server::stop() const noexcept {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(stops_.number(), &one, sizeof one);
}

std::size_t Agent::Server::count() {
  const std::lock_guard lock(mutex_);
  return sessions_.size();
}

void Agent::Server::run() {
  std::array<pollfd, 2> polled = {{{listener_.number(), POLLIN, 0}, {stops_.number(), POLLIN, 0}}};
  while ((polled[1].revents & POLLIN) == 0) {
    if (::poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) fail("poll", errno);
    if ((polled[0].revents & POLLIN) != 0) accept();
  }
  listener_ = Descriptor();
  write_log("ending");
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [id, session] : sessions_) session->end();
  }
  std::unique_lock lock(mutex_);
  const auto is_done = [this] { return sessions_.empty(); };
  if (is_empty_.wait_for(lock, options_.patience, is_done)) return;
  for (const auto& [id, session] : sessions_) session->abort();
  is_empty_.wait(lock, is_done);
}

agent::User Agent::Server::user_at(const Descriptor& client) const {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(client.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) {
    fail("SO_PEERCRED", errno);
  }
  // Of whom nothing is known, it is not known that they may write.
  const auto name = name_of(peer.uid);
  agent::User user = {name.value_or("uid-" + std::to_string(peer.uid))};
  user.may_only_read =
      options_.read_only_users.contains(user.name) || (!name && !options_.read_only_users.empty());
  if (read_only_group_) {
    const auto groups = groups_of(client.number(), peer.gid);
    user.may_only_read = user.may_only_read || groups.empty() || is_in(groups, *read_only_group_);
  }
  return user;
}

void Agent::Server::refuse(const Descriptor& client, const std::string& reason) {
  const std::string message = agent::framed(
      "<rpc-reply xmlns=\"" + std::string(agent::kBase) + "\">" +
          agent::print({agent::RpcError{agent::tags::kResourceDenied, reason}}) + "</rpc-reply>",
      agent::Framing::kEndMark);
  ::send(client.number(), message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  write_log("a client is refused: " + reason);
}

void Agent::Server::accept() {
  Descriptor client(::accept4(listener_.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!client) {
    if (errno == EAGAIN || errno == EINTR || errno == ECONNABORTED) return;
    // Too many files are open, and the client waits: others have to go first.
    write_log(std::string("no client can be taken: ") + std::strerror(errno));
    std::this_thread::sleep_for(kPause);
    return;
  }
  try {
    if (count() >= options_.most_sessions) {
      refuse(client, std::to_string(options_.most_sessions) + " sessions are open, the limit");
      return;
    }
    const agent::User user = user_at(client);
    begin(std::move(client), user);
  } catch (const std::exception& error) {
    write_log(std::string("a client is refused: ") + error.what());
  }
}

void Agent::Server::begin(Descriptor client, const agent::User& user) {
  const agent::SessionId id = ++last_id_;
  auto session = std::make_unique<agent::Session>(
      std::move(client), agent::SessionLimits{options_.longest_message, options_.patience},
      agent::Session::Events{
          [this, id](std::string message) { worker_.add(core_.received(id, std::move(message))); },
          [this, id] {
            worker_.add([this, id] {
              core_.refused(id);
              return agent::Step::kDone;
            });
          },
          [this, id](const std::string& reason) {
            worker_.add([this, id, reason] {
              end(id, reason);
              return agent::Step::kDone;
            });
          }});
  agent::Session* begun = session.get();
  {
    const std::lock_guard lock(mutex_);
    sessions_.emplace(id, std::move(session));
  }
  worker_.add([this, id, user, begun] {
    core_.open(id, user, *begun);
    try {
      begun->start();
    } catch (const std::system_error& error) {
      end(id, std::string("no thread: ") + error.what());
    }
    return agent::Step::kDone;
  });
}

// The session's thread is about to end, and is waited for.
void Agent::Server::end(agent::SessionId id, const std::string& reason) {
  core_.close(id, reason);
  std::unique_ptr<agent::Session> ended;
  {
    const std::lock_guard lock(mutex_);
    const auto found = sessions_.find(id);
    ended = std::move(found->second);
    sessions_.erase(found);
  }
  is_empty_.notify_one();
}

Agent::Agent(Host& host, AgentOptions options, Log log)
    : server_(std::make_unique<Server>(host, std::move(options), std::move(log))) {}

Agent::~Agent() = default;

void Agent::run() { server_->run(); }

void Agent::stop() noexcept { server_->stop(); }

}  // namespace ocifip
