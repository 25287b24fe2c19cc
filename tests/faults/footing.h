// What a callback of the plug-in must leave as it found it.
#ifndef FOOTING_H_
#define FOOTING_H_

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "request/request.h"

namespace ocifip::faults {

class Footing {
 public:
  Footing(Request& request, const InputNode& in)
      : request_(request), in_(in), before_(look()), nodes_(walked()) {
    visit(in, [&](const InputNode& node) { operations_.push_back(node.edit_operation); });
  }

  // What differs now, or "".
  [[nodiscard]] std::string disturbed() const {
    std::string names;
    const std::vector<Fact> now = look();
    for (std::size_t i = 0; i < now.size(); ++i) {
      names += now[i].value == before_[i].value ? "" : std::string(" ") + now[i].name;
    }
    std::vector<std::uint8_t> operations;
    visit(in_, [&](const InputNode& node) { operations.push_back(node.edit_operation); });
    names += operations == operations_ ? "" : " operations";
    return names + (walked() == nodes_ ? "" : " hierarchy");
  }

  // Whether each input node's operation is marked as rewritten.
  [[nodiscard]] std::vector<bool> overrides() const {
    std::vector<bool> marks;
    visit(in_, [&](const InputNode& node) {
      marks.push_back((node.flags & NIDL_YFW_FLAG_OPERATION_OVERRIDE) != 0);
    });
    return marks;
  }

 private:
  struct Fact {
    const char* name;
    std::string value;
  };

  [[nodiscard]] std::vector<Fact> look() const {
    const yfw_map_request_state& state = request_.state();
    return {{"trim-prefix", request_.trim_prefix()},
            {"output-list", std::to_string(request_.output_list().size())},
            {"output-list-depth", std::to_string(state.output_list_depth)},
            {"visited-entries", std::to_string(state.visited_entries->elements.size())},
            {"list-wide", std::to_string(state.list_wide)},
            {"list-entry-reuse", std::to_string(state.list_entry_reuse)},
            {"list-operation", std::to_string(state.list_edit_op)},
            {"interface", state.current_ifname},
            {"subinterface", state.current_subif_index}};
  }

  [[nodiscard]] std::vector<const InputNode*> walked() const {
    const auto nodes = request_.hierarchy().nodes();
    return {nodes.begin(), nodes.end()};
  }

  template <class Visitor>
  static void visit(const InputNode& node, const Visitor& visitor) {
    visitor(node);
    for (const InputNode& child : children_of(node)) {
      visit(child, visitor);
    }
  }

  Request& request_;
  const InputNode& in_;
  std::vector<Fact> before_;
  std::vector<const InputNode*> nodes_;
  std::vector<std::uint8_t> operations_;
};

}  // namespace ocifip::faults

#endif  // FOOTING_H_
