#include "mapping/edit_parts.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "io/document_nodes.h"
#include "yfw/context.h"

namespace ocifip {
namespace {

constexpr std::string_view kInterfacesModule = "openconfig-interfaces";
constexpr std::string_view kIpModule = "openconfig-if-ip";

enum class Side { kReplaced, kOther };

// What is said of replacing, on the way from the top to a node.
struct Replacing {
  bool is_annotated = false;  // the node or one above is replaced as a whole
  bool is_inherited = false;  // it is the operation of a node that says none
};

Replacing at(const DocumentNode& node, Replacing above) {
  Replacing here = above;
  if (node.operation) {
    const bool replaces = *node.operation == Operation::kReplace;
    here = {above.is_annotated || replaces, replaces};
  }
  // Of a request that replaces, each subinterface is replaced, whatever is said below it.
  const bool is_unit = node.module == kInterfacesModule && node.tag == "subinterface";
  here.is_annotated = here.is_annotated || (is_unit && here.is_inherited);
  return here;
}

bool is_family(const DocumentNode& node) {
  return node.module == kIpModule && (node.tag == "ipv4" || node.tag == "ipv6");
}

// What only leads to the families of subinterfaces.
bool is_way(const DocumentNode& node) {
  return node.module == kInterfacesModule &&
         (node.tag == "interfaces" || node.tag == "interface" || node.tag == "subinterfaces" ||
          node.tag == "subinterface") &&
         !(node.operation && is_deleting(*node.operation));
}

bool replaces_addresses(const DocumentNode& family, Replacing above) {
  Replacing replacing = at(family, above);
  for (const DocumentNode& child : family.children) {
    if (child.module == kIpModule && child.tag == "addresses") replacing = at(child, replacing);
  }
  return replacing.is_annotated || replacing.is_inherited;
}

Side side_of(const DocumentNode& node, Replacing above) {
  return is_family(node) && replaces_addresses(node, above) ? Side::kReplaced : Side::kOther;
}

// The sides that an edit has, in the order of the document.
void find_sides(const std::vector<DocumentNode>& nodes, Replacing above, std::vector<Side>& sides) {
  for (const DocumentNode& node : nodes) {
    if (is_key(node)) continue;
    if (is_way(node)) {
      find_sides(node.children, at(node, above), sides);
      continue;
    }
    const Side side = side_of(node, above);
    if (std::find(sides.begin(), sides.end(), side) == sides.end()) sides.push_back(side);
  }
}

// Moves what is not of a side out of siblings; nodes on the way stay, and are copied.
std::vector<DocumentNode> take_others(std::vector<DocumentNode>& nodes, Replacing above,
                                      Side side) {
  std::vector<DocumentNode> kept;
  std::vector<DocumentNode> taken;
  for (DocumentNode& node : nodes) {
    if (is_key(node)) {
      taken.push_back(node);
    } else if (is_way(node)) {
      DocumentNode way = bare(node);
      way.operation = node.operation;
      way.children = take_others(node.children, at(node, above), side);
      taken.push_back(std::move(way));
    } else if (side_of(node, above) != side) {
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
    return std::all_of(node.children.begin(), node.children.end(), is_key);
  });
}

std::uint32_t request_op(Side side, DefaultOperation operation) {
  if (side == Side::kReplaced) return YFW_MAP_REQUEST_REPLACE;
  return operation == DefaultOperation::kCreate ? std::uint32_t{YFW_MAP_REQUEST_CREATE}
                                                : std::uint32_t{YFW_MAP_REQUEST_MERGE};
}

}  // namespace

std::vector<EditPart> parts_of(Document document, DefaultOperation operation) {
  const Replacing replacing = {false, operation == DefaultOperation::kReplace};
  std::vector<Side> sides;
  find_sides(document.roots, replacing, sides);
  std::vector<EditPart> parts;
  if (sides.empty()) sides.push_back(Side::kOther);
  if (sides.size() == 1) {
    parts.push_back({std::move(document), request_op(sides.front(), operation)});
    return parts;
  }
  Document others = {document.name, take_others(document.roots, replacing, sides.front())};
  prune(document.roots);
  prune(others.roots);
  parts.push_back({std::move(document), request_op(sides[0], operation)});
  parts.push_back({std::move(others), request_op(sides[1], operation)});
  return parts;
}

}  // namespace ocifip
