#include "mapping/edit_parts.h"

#include <algorithm>
#include <utility>

#include "mapping/interface_nodes.h"
#include "yfw/context.h"

namespace ocifip {
namespace {

enum class Side { kReplaced, kOther };

// Whether a node is part of what is replaced, given that for the one above.
bool is_replaced(const DocumentNode& node, bool is_above) {
  return is_above || node.operation == Operation::kReplace;
}

// What only leads to the families of subinterfaces.
bool is_way(const DocumentNode& node) {
  return (leads_to_subinterfaces(node) || is_subinterface(node)) && !is_deleted(node);
}

bool replaces_addresses(const DocumentNode& family, bool is_above) {
  return is_replaced(family, is_above) ||
         std::any_of(family.children.begin(), family.children.end(), [](const auto& child) {
           return is_named(child, kIpModule, "addresses") && is_replaced(child, false);
         });
}

Side side_of(const DocumentNode& node, bool is_above) {
  return is_family(node) && replaces_addresses(node, is_above) ? Side::kReplaced : Side::kOther;
}

// The sides that an edit has, in the order of the document.
void find_sides(const std::vector<DocumentNode>& nodes, bool is_above, std::vector<Side>& sides) {
  for (const DocumentNode& node : nodes) {
    if (is_key(node)) continue;
    if (is_way(node)) {
      find_sides(node.children, is_replaced(node, is_above), sides);
      continue;
    }
    const Side side = side_of(node, is_above);
    if (std::find(sides.begin(), sides.end(), side) == sides.end()) sides.push_back(side);
  }
}

// Moves what is not of a side out of siblings; nodes on the way stay, and are copied.
std::vector<DocumentNode> take_others(std::vector<DocumentNode>& nodes, bool is_above, Side side) {
  std::vector<DocumentNode> kept;
  std::vector<DocumentNode> taken;
  for (DocumentNode& node : nodes) {
    if (is_key(node)) {
      taken.push_back(node);
    } else if (is_way(node)) {
      DocumentNode way = bare(node);
      way.operation = node.operation;
      way.children = take_others(node.children, is_replaced(node, is_above), side);
      taken.push_back(std::move(way));
    } else if (side_of(node, is_above) != side) {
      taken.push_back(std::move(node));
      continue;
    }
    kept.push_back(std::move(node));
  }
  nodes = std::move(kept);
  return taken;
}

// Drops what leads to nothing.
void prune(std::vector<DocumentNode>& nodes) {
  std::erase_if(nodes, [](DocumentNode& node) {
    if (!is_way(node)) return false;
    prune(node.children);
    return has_only_keys(node);
  });
}

std::uint32_t request_op(Side side, DefaultOperation operation) {
  if (side == Side::kReplaced) return YFW_MAP_REQUEST_REPLACE;
  return operation == DefaultOperation::kCreate ? std::uint32_t{YFW_MAP_REQUEST_CREATE}
                                                : std::uint32_t{YFW_MAP_REQUEST_MERGE};
}

}  // namespace

std::vector<EditPart> parts_of(Document document, DefaultOperation operation) {
  std::vector<Side> sides;
  find_sides(document.roots, false, sides);
  std::vector<EditPart> parts;
  if (sides.empty()) sides.push_back(Side::kOther);
  if (sides.size() == 1) {
    parts.push_back({std::move(document), request_op(sides.front(), operation)});
    return parts;
  }
  Document others = {document.name, take_others(document.roots, false, sides.front())};
  prune(document.roots);
  prune(others.roots);
  parts.push_back({std::move(document), request_op(sides[0], operation)});
  parts.push_back({std::move(others), request_op(sides[1], operation)});
  return parts;
}

}  // namespace ocifip
