// The nodes of the input that are being walked, and the current entries of its lists.
#ifndef OCIFIP_HOST_REQUEST_HIERARCHY_H_
#define OCIFIP_HOST_REQUEST_HIERARCHY_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "yfw/context.h"

namespace ocifip {

using InputNode = nidl_yfw_datatree;

// The children of an input node.
std::span<const InputNode> children_of(const InputNode& node);
// A child with a tag, or null.
const InputNode* find_child(const InputNode& node, std::string_view tag);

class Hierarchy {
 public:
  // Keeps what the state says of the nodes being walked: the interface, the subinterface, the
  // operation of the list being edited, and whether that list is deleted as a whole.
  explicit Hierarchy(yfw_map_request_state& state) : state_(state) {}

  void push(const InputNode& node, std::uint32_t kind);
  // False when the node is not the innermost one.
  bool pop(const InputNode& node);

  // Makes the innermost node, a list entry, the current entry of a list; false when it is none. The
  // path has no prefixes and outlives the hierarchy.
  bool make_current(const std::string& list_path);
  // The current entry of a list, or the container being walked that stands at a path, or null.
  [[nodiscard]] const InputNode* find(std::string_view path) const;

  // The innermost entry being walked that has a child with a tag and a value, or null.
  [[nodiscard]] const InputNode* innermost_entry_with(std::string_view tag) const;

  // The list entries being walked, the outermost first.
  [[nodiscard]] std::span<const InputNode* const> entries() const { return entries_; }
  // The nodes being walked, the outermost first.
  [[nodiscard]] std::span<const InputNode* const> nodes() const { return {nodes_.data(), depth_}; }
  // Whether a node is being walked. It is not looked at.
  [[nodiscard]] bool is_walked(const void* node) const;
  // The nodes that were being walked when the last push was made.
  [[nodiscard]] std::span<const InputNode* const> last_pushed() const { return nodes_; }

 private:
  struct CurrentEntry {
    const std::string* list_path;
    const InputNode* entry;
    std::size_t depth;
  };
  struct ListOperation {
    std::size_t depth;
    std::uint8_t outer;
  };

  void enter_list(const InputNode& container);
  void leave_list();
  void enter_list_wide(const InputNode& node, bool is_list_entry);
  void leave_list_wide();
  void leave_current_entries();
  void name_interface(const std::string& list_path);
  [[nodiscard]] const InputNode* current_entry(std::string_view list_path) const;
  [[nodiscard]] const InputNode* walked_at(std::string_view path) const;

  yfw_map_request_state& state_;
  std::vector<const InputNode*> nodes_;  // those beyond depth_ have been left
  std::size_t depth_ = 0;
  std::vector<const InputNode*> entries_;
  std::vector<CurrentEntry> current_;
  std::vector<ListOperation> list_operations_;
  std::vector<std::uint8_t> outer_list_wide_;  // what the flag was around each node being walked
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_HIERARCHY_H_
