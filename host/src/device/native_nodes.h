// What the device's services look up in its native configuration.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_NODES_H_
#define OCIFIP_HOST_DEVICE_NATIVE_NODES_H_

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"

namespace ocifip {

// A node is of a module by its name, or, where no model knows it, by what its document calls it.
bool is_native_node(const DocumentNode& node, std::string_view module, std::string_view tag);

// The first node of a module with a tag among siblings, or null.
const DocumentNode* find_native(const std::vector<DocumentNode>& nodes, std::string_view module,
                                std::string_view tag);

// The node that a path of one module leads to from another node, or null.
const DocumentNode* find_native_below(const DocumentNode& node, std::string_view module,
                                      std::initializer_list<std::string_view> path);

using NativeVisitor = std::function<void(const DocumentNode&)>;

// Calls a function with every node that a path of one module leads to.
void each_native(const std::vector<DocumentNode>& nodes, std::string_view module,
                 std::initializer_list<std::string_view> path, const NativeVisitor& visit);

// Whether a node is the entry of an interface in its native configuration.
bool is_native_interface(const DocumentNode& node);

// The value of a leaf below a node; "" without the leaf or its value.
std::string native_leaf(const DocumentNode& node, std::string_view module, std::string_view tag);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_NODES_H_
