// What several operations have in common.
#ifndef OCIFIP_AGENT_OPERATION_PARTS_H_
#define OCIFIP_AGENT_OPERATION_PARTS_H_

#include "names.h"
#include "operations.h"
#include "parameters.h"
#include "rpc_error.h"

namespace ocifip::agent {

// The datastore that is named in a <source> or <target>. Throws OperationError.
Datastore datastore_in(const xmlNode* parameter);

// How a filter chooses. Throws OperationError for a type that there is none of.
enum class FilterType : std::uint8_t { kSubtree, kXPath };
FilterType type_of(const xmlNode* filter);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_OPERATION_PARTS_H_
