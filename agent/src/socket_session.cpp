#include "socket_session.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "names.h"
#include "rpc_error.h"

namespace ocifip::agent {
namespace {

using Time = std::chrono::steady_clock::time_point;

// What is read at once.
constexpr std::size_t kPartSize = 16384;

// A client that has so much to read is asked for nothing more.
constexpr std::size_t kMostBacklog = std::size_t{1} << 20;

Time now() { return std::chrono::steady_clock::now(); }

}  // namespace

Session::Session(Descriptor socket, const SessionLimits& limits, Events events)
    : socket_(std::move(socket)),
      wakes_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      limits_(limits),
      events_(std::move(events)),
      reader_(limits.longest_message) {
  if (!wakes_) throw std::system_error(errno, std::generic_category(), "eventfd");
}

Session::~Session() {
  if (thread_.joinable()) thread_.join();
}

void Session::start() {
  thread_ = std::thread([this] { run(); });
}

void Session::wake() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakes_.number(), &one, sizeof one);
}

void Session::use(Framing framing) {
  const std::lock_guard lock(mutex_);
  framing_ = framing;
}

void Session::send(std::string message) {
  {
    const std::lock_guard lock(mutex_);
    backlog_ += output_.emplace_back(framed(std::move(message), framing_)).size();
  }
  wake();
}

std::size_t Session::backlog() {
  const std::lock_guard lock(mutex_);
  return backlog_;
}

void Session::resume() {
  {
    const std::lock_guard lock(mutex_);
    is_busy_ = false;
    has_said_hello_ = true;
  }
  wake();
}

void Session::end() {
  {
    const std::lock_guard lock(mutex_);
    if (state_ == State::kOpen) state_ = State::kEnding;
  }
  wake();
}

void Session::abort() {
  {
    const std::lock_guard lock(mutex_);
    state_ = State::kAborted;
  }
  wake();
}

Session::Asked Session::asked() {
  const std::lock_guard lock(mutex_);
  reader_.use(framing_);
  if (backlog_ > 0 && !unread_since_) unread_since_ = now();
  return {state_, is_busy_, backlog_ > 0, backlog_ > kMostBacklog};
}

void Session::run() {
  try {
    while (step()) {
    }
  } catch (const std::exception& error) {
    reason_ = error.what();
  }
  events_.ended(reason_);
}

// Whether the session goes on.
bool Session::step() {
  const Asked now = asked();
  if (now.state == State::kAborted) return false;
  if (now.state == State::kEnding && !now.is_busy && !now.has_output) return false;
  const bool takes_messages = now.state == State::kOpen && !now.is_busy && !now.is_behind;
  if (takes_messages && take_message()) return true;
  if (has_ended_input_ && !now.is_busy && !now.has_output) return false;
  if (is_overdue(now)) return false;
  return wait(now);
}

// Whether there is one.
bool Session::take_message() {
  try {
    auto message = reader_.next();
    if (!message) {
      if (!reader_.is_within_message()) {
        within_message_since_.reset();
      } else if (!within_message_since_) {
        within_message_since_ = now();
      }
      return false;
    }
    within_message_since_.reset();
    {
      const std::lock_guard lock(mutex_);
      is_busy_ = true;
    }
    events_.received(std::move(*message));
  } catch (const TooLong& error) {
    refuse(tags::kTooBig, error.what());
  } catch (const FramingError& error) {
    refuse(tags::kMalformed, error.what());
  }
  return true;
}

// Ends the session with a sentence: what follows in the stream cannot be understood.
void Session::refuse(const char* tag, const std::string& reason) {
  reason_ = reason;
  events_.refused();
  send("<rpc-reply xmlns=\"" + std::string(kBase) + "\">" + print({RpcError{tag, reason, "rpc"}}) +
       "</rpc-reply>");
  end();
}

// The first of what a client has to do in time, and until when.
std::optional<std::pair<Time, const char*>> Session::deadline(const Asked& asked) {
  if (asked.has_output && unread_since_) return {{*unread_since_, "the client does not read"}};
  if (asked.is_busy || asked.state != State::kOpen) return std::nullopt;
  if (within_message_since_)
    return {{*within_message_since_, "the rest of a message did not come"}};
  const std::lock_guard lock(mutex_);
  if (!has_said_hello_) return {{begin_, "no hello came"}};
  return std::nullopt;
}

bool Session::is_overdue(const Asked& asked) {
  const auto due = deadline(asked);
  if (!due || now() - due->first < limits_.patience) return false;
  reason_ =
      due->second + std::string(" within ") + std::to_string(limits_.patience.count()) + " seconds";
  return true;
}

int Session::milliseconds_left(const Asked& asked) {
  const auto due = deadline(asked);
  if (!due) return -1;
  const auto left = due->first + limits_.patience - now();
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
  return static_cast<int>(std::clamp<std::int64_t>(milliseconds, 0, 3'600'000));
}

// Waits for the client, or for what others ask. Whether the client is still there.
bool Session::wait(const Asked& asked) {
  const bool is_reading =
      asked.state == State::kOpen && !asked.is_busy && !asked.is_behind && !has_ended_input_;
  const auto events =
      static_cast<short>((is_reading ? POLLIN : 0) | (asked.has_output ? POLLOUT : 0));
  std::array<pollfd, 2> polled = {{{socket_.number(), events, 0}, {wakes_.number(), POLLIN, 0}}};
  if (::poll(polled.data(), polled.size(), milliseconds_left(asked)) < 0) {
    if (errno == EINTR) return true;
    throw std::system_error(errno, std::generic_category(), "poll");
  }
  if ((polled[1].revents & POLLIN) != 0) {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto size = ::read(wakes_.number(), &count, sizeof count);
  }
  if ((polled[0].revents & POLLOUT) != 0 && !write()) return false;
  if ((polled[0].revents & POLLIN) != 0) {
    read();
  } else if ((polled[0].revents & (POLLHUP | POLLERR)) != 0) {
    reason_ = "the client has gone";
    return false;
  }
  return true;
}

void Session::read() {
  std::array<char, kPartSize> part;  // NOLINT: it is filled before it is looked at
  const auto size = ::recv(socket_.number(), part.data(), part.size(), MSG_DONTWAIT);
  if (size > 0) {
    reader_.add({part.data(), static_cast<std::size_t>(size)});
    if (!within_message_since_) within_message_since_ = now();
  } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
    has_ended_input_ = true;
  }
}

// Whether the client takes anything at all.
bool Session::write() {
  const std::lock_guard lock(mutex_);
  const std::string& first = output_.front();
  const auto size = ::send(socket_.number(), first.data() + written_, first.size() - written_,
                           MSG_NOSIGNAL | MSG_DONTWAIT);
  if (size < 0) {
    if (errno == EAGAIN || errno == EINTR) return true;
    reason_ = "the client has gone";
    return false;
  }
  unread_since_ = now();
  written_ += static_cast<std::size_t>(size);
  backlog_ -= static_cast<std::size_t>(size);
  if (written_ == first.size()) {
    written_ = 0;
    output_.pop_front();
    if (output_.empty()) unread_since_.reset();
  }
  return true;
}

}  // namespace ocifip::agent
