// The YANG modules that the host knows, loaded once through libyang.
#ifndef OCIFIP_HOST_IO_MODELS_H_
#define OCIFIP_HOST_IO_MODELS_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"

struct ly_ctx;
struct lysc_node;

namespace ocifip {

class Models {
 public:
  // Loads every *.yang module of a folder, with all of its features. Throws LoadError naming the
  // module and libyang's reason.
  explicit Models(const std::string& folder);
  ~Models();
  Models(const Models&) = delete;
  Models& operator=(const Models&) = delete;

  [[nodiscard]] const ly_ctx* context() const;

  // Whether a module defines an annotation: "ietf-netconf:operation".
  [[nodiscard]] bool has_annotation(std::string_view name) const;

  // Name of the module with a namespace, and the reverse; "" when unknown. The name of a native
  // module is known by its namespace, also when the module is not there.
  [[nodiscard]] std::string_view module_of(std::string_view module_namespace) const;
  [[nodiscard]] std::string_view namespace_of(std::string_view module) const;

  // The top-level node of a module, or the data child of a node (choices and cases are seen
  // through), in constant time. An empty namespace means the parent's; at the top, that of the one
  // module with the name, or of the one of them that imports the others. Null when unknown.
  [[nodiscard]] const lysc_node* child(const lysc_node* parent, std::string_view tag,
                                       std::string_view module_namespace) const;

  // The data children of a node in schema order with keys first, augments included; the top-level
  // nodes of every module for null. They live as long as the models.
  [[nodiscard]] const std::vector<const lysc_node*>& children(const lysc_node* parent) const;

  // Place of a node among its parent's data children: keys first, as their key statement has them,
  // then the others in schema order.
  [[nodiscard]] static std::size_t position(const lysc_node* node);

  // Key names of a list in the order of its key statement; empty for a keyless list or another
  // node. They live as long as the models.
  [[nodiscard]] static const std::vector<std::string>& keys(const lysc_node* list);

  [[nodiscard]] static NodeKind kind(const lysc_node* node);
  // Those live as long as the models.
  [[nodiscard]] static const std::string& tag(const lysc_node* node);
  [[nodiscard]] static const std::string& module(const lysc_node* node);
  [[nodiscard]] static const std::string& module_namespace(const lysc_node* node);
  [[nodiscard]] static bool is_leaf(const lysc_node* node);  // or leaf-list
  [[nodiscard]] static bool is_any(const lysc_node* node);   // anydata or anyxml
  [[nodiscard]] static bool is_key(const lysc_node* node);
  [[nodiscard]] static bool is_state(const lysc_node* node);       // config false
  [[nodiscard]] static bool is_empty_leaf(const lysc_node* node);  // of type empty
  // A key, or a leaf-list, whose type has IPv6 addresses as its values. False for null.
  [[nodiscard]] static bool names_by_ipv6(const lysc_node* node);
  // Whether the data of a node, or below it, may be wrong for what stands elsewhere: by references,
  // conditions, unique values or numbers of entries.
  [[nodiscard]] bool has_far_constraints(const lysc_node* node) const;
  // Whether that holds, or one of its nodes may be wrong for what is beside or below it: whether
  // there is more to check than each node alone, with the keys of an entry.
  [[nodiscard]] bool has_constraints(const lysc_node* node) const;
  // A container without presence, which says nothing by being there.
  [[nodiscard]] static bool is_plain_container(const lysc_node* node);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_MODELS_H_
