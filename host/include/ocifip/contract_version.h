// The version of the contract between a framework and its mapping plug-ins.
#ifndef OCIFIP_CONTRACT_VERSION_H_
#define OCIFIP_CONTRACT_VERSION_H_

#include <string>

namespace ocifip {

// The version that this host offers to plug-ins, "1.0".
std::string contract_version();

}  // namespace ocifip

#endif  // OCIFIP_CONTRACT_VERSION_H_
