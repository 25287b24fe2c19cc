#include "io/meant_node.h"

#include <vector>

#include "io/text.h"
#include "ocifip/nearest_name.h"

namespace ocifip {

std::string meant_node(const Models& models, const lysc_node* parent, std::string_view tag) {
  const auto& children = models.children(parent);
  std::vector<std::string> tags;
  tags.reserve(children.size());
  for (const auto* child : children) tags.emplace_back(Models::tag(child));
  const auto nearest = nearest_name(tag, tags);
  for (const auto* child : children) {
    if (Models::tag(child) != nearest) continue;
    const bool is_of_parent = parent != nullptr && Models::module(child) == Models::module(parent);
    const auto module = is_of_parent ? "" : std::string(Models::module(child)) + ':';
    return ", did you mean " + in_quotes(module + nearest) + "?";
  }
  return {};
}

}  // namespace ocifip
