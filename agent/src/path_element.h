// Paths in messages.
#ifndef OCIFIP_AGENT_PATH_ELEMENT_H_
#define OCIFIP_AGENT_PATH_ELEMENT_H_

#include <string>
#include <string_view>
#include <vector>

#include "ocifip/configuration.h"

namespace ocifip::agent {

// An element with a path, in which the names of modules are the prefixes of their namespaces.
std::string path_element(std::string_view name, const DataPath& path,
                         const std::vector<Module>& modules);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_PATH_ELEMENT_H_
