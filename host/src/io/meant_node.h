// What was meant by a node that no model knows.
#ifndef OCIFIP_HOST_IO_MEANT_NODE_H_
#define OCIFIP_HOST_IO_MEANT_NODE_H_

#include <string>
#include <string_view>

#include "io/models.h"

namespace ocifip {

// `, did you mean "MODULE:TAG"?` for the child of a node, or a top-level node for null, whose tag
// is nearest; without the module when it is the parent's. "" when none is near.
std::string meant_node(const Models& models, const lysc_node* parent, std::string_view tag);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_MEANT_NODE_H_
