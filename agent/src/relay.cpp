// What a transport runs for a client: bytes in and out, nothing else.
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "ocifip/agent.h"
#include "ocifip/messages.h"
#include "unix_socket.h"

namespace ocifip {
namespace {

constexpr std::size_t kPartSize = 65536;

// Whether all could be written.
bool write_all(int out, const char* bytes, std::size_t size) {
  while (size > 0) {
    const auto written = ::write(out, bytes, size);
    if (written < 0 && errno != EINTR) return false;
    if (written <= 0) continue;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

// Copies what there is. Whether more may come, and be taken.
bool copy(int in, int out) {
  std::array<char, kPartSize> part;  // NOLINT: it is filled before it is looked at
  const auto size = ::read(in, part.data(), part.size());
  if (size < 0) return errno == EINTR;
  return size > 0 && write_all(out, part.data(), static_cast<std::size_t>(size));
}

}  // namespace

void relay(const std::string& socket, int in, int out) {
  const agent::Descriptor server = agent::connect_to(socket);
  if (!server) throw AgentError("no agent at " + in_quotes(socket) + ": " + std::strerror(errno));
  std::signal(SIGPIPE, SIG_IGN);
  std::array<pollfd, 2> polled = {{{in, POLLIN, 0}, {server.number(), POLLIN, 0}}};
  for (;;) {
    if (::poll(polled.data(), polled.size(), -1) < 0) {
      if (errno == EINTR) continue;
      throw AgentError(std::string("poll: ") + std::strerror(errno));
    }
    if (polled[1].revents != 0 && !copy(server.number(), out)) return;
    if (polled[0].revents != 0 && !copy(in, server.number())) {
      // Replies may still come.
      ::shutdown(server.number(), SHUT_WR);
      polled[0].fd = -1;
    }
  }
}

}  // namespace ocifip
