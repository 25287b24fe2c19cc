// Unix sockets by their paths.
#ifndef OCIFIP_AGENT_UNIX_SOCKET_H_
#define OCIFIP_AGENT_UNIX_SOCKET_H_

#include <sys/un.h>

#include <string>

#include "descriptor.h"

namespace ocifip::agent {

// Throws AgentError for a path that no socket can have.
sockaddr_un address_of(const std::string& path);
// A connected socket or, without one, errno says why there is none. Throws AgentError as above.
Descriptor connect_to(const std::string& path);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_UNIX_SOCKET_H_
