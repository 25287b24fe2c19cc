#include "unix_socket.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>

#include "ocifip/agent.h"
#include "ocifip/messages.h"

namespace ocifip::agent {

sockaddr_un address_of(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) {
    throw AgentError("the path of a socket has 1 to " +
                     std::to_string(sizeof address.sun_path - 1) + " bytes: " + in_quotes(path));
  }
  std::memcpy(address.sun_path, path.data(), path.size());
  return address;
}

Descriptor connect_to(const std::string& path) {
  const sockaddr_un address = address_of(path);
  Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket) return {};
  const auto* place = reinterpret_cast<const sockaddr*>(&address);
  if (::connect(socket.number(), place, sizeof address) == 0) return socket;
  const int error = errno;
  socket = Descriptor();
  errno = error;
  return {};
}

}  // namespace ocifip::agent
