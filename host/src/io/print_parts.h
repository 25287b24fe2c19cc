// What the printers have in common.
#ifndef OCIFIP_HOST_IO_PRINT_PARTS_H_
#define OCIFIP_HOST_IO_PRINT_PARTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"

namespace ocifip {

// The nodes from the top down to the one being printed.
using NodePath = std::vector<const DocumentNode*>;

// The order among siblings: the document's, or that of the source that they were read from.
enum class NodeOrder : std::uint8_t { kOwn, kAsRead };

std::string print_json(const Document& document, std::vector<std::string>& notes,
                       NodeOrder order = NodeOrder::kOwn);
std::string print_xml(const Document& document, std::vector<std::string>& notes);
std::string print_tree(const Document& document);

// "write", "replace", "delete", "remove" or "none".
std::string_view operation_name(Operation operation);

// The operation that JSON and XML show of a node; "" for none.
std::string_view shown_operation(const DocumentNode& node);

// The nodes among siblings that JSON and XML show. Left out are nodes that neither do anything
// themselves nor lead to one that does, and entries that lack a key; a note says so for each entry.
// The path ends with the parent, and is as before at the end.
std::vector<const DocumentNode*> shown_nodes(const std::vector<DocumentNode>& siblings,
                                             NodePath& path, std::vector<std::string>& notes);

// The name of a node's module, or what stands for it when no model knows the module.
std::string_view module_name(const DocumentNode& node);

// Adds so many levels of indentation.
void indent(std::string& out, std::size_t depth);

// A value in double quotes, escaped as a JSON string and made UTF-8.
void append_value(std::string& out, std::string_view value);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_PRINT_PARTS_H_
