// Unix sockets by their paths.
#ifndef OCIFIP_AGENT_UNIX_SOCKET_H_
#define OCIFIP_AGENT_UNIX_SOCKET_H_

#include <sys/un.h>

#include <string>

#include "descriptor.h"

namespace ocifip::agent {

// Both throw AgentError.
sockaddr_un address_of(const std::string& path);
Descriptor connect_to(const std::string& path);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_UNIX_SOCKET_H_
