// The connection of one client: a thread that reads its messages and writes what is for it.
#ifndef OCIFIP_AGENT_SOCKET_SESSION_H_
#define OCIFIP_AGENT_SOCKET_SESSION_H_

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "client.h"
#include "descriptor.h"
#include "framing.h"

namespace ocifip::agent {

struct SessionLimits {
  std::size_t longest_message;
  std::chrono::seconds patience;
};

class Session : public Peer {
 public:
  // What the session's thread has to tell.
  struct Events {
    std::function<void(std::string message)> received;     // no other comes before resume()
    std::function<void()> refused;                         // what came is no message
    std::function<void(const std::string& reason)> ended;  // once, as the last thing; "" for none
  };

  // Takes a connected socket. Throws std::system_error.
  Session(Descriptor socket, const SessionLimits& limits, Events events);
  // Waits for the thread; somebody else than that destroys a session.
  ~Session() override;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  void start();

  // Peer; from any thread.
  void use(Framing framing) override;
  void send(std::string message) override;
  std::size_t backlog() override;
  void resume() override;
  void end() override;
  void abort() override;

 private:
  enum class State : std::uint8_t { kOpen, kEnding, kAborted };
  // What the others ask of the thread, as it is at one moment.
  struct Asked {
    State state;
    bool is_busy;
    bool has_output;
    bool is_behind;  // there is much of it
  };

  void run();
  bool step();
  Asked asked();
  bool take_message();
  void refuse(const char* tag, const std::string& reason);
  std::optional<std::pair<std::chrono::steady_clock::time_point, const char*>> deadline(
      const Asked& asked);
  bool is_overdue(const Asked& asked);
  int milliseconds_left(const Asked& asked);
  bool wait(const Asked& asked);
  void read();
  bool write();
  void wake() const;

  Descriptor socket_;
  Descriptor wakes_;  // counts the wishes of others
  SessionLimits limits_;
  Events events_;

  std::mutex mutex_;  // of the next seven
  State state_ = State::kOpen;
  Framing framing_ = Framing::kEndMark;
  bool is_busy_ = false;  // with a message
  bool has_said_hello_ = false;
  std::deque<std::string> output_;
  std::size_t written_ = 0;  // of the first of that
  std::size_t backlog_ = 0;  // what is left of all

  // The thread's own.
  FrameReader reader_;
  bool has_ended_input_ = false;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::optional<std::chrono::steady_clock::time_point> within_message_since_;
  std::optional<std::chrono::steady_clock::time_point> unread_since_;  // there is output
  std::string reason_;                                                 // of the end

  std::thread thread_;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_SOCKET_SESSION_H_
