#include "mapping/probe.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "io/document_nodes.h"
#include "io/libyang_log.h"

namespace ocifip {
namespace {

// Tried with every leaf. Several numbers, since some of what a type accepts is refused by the
// mapping; the first one is the index of the subinterface that is the interface itself.
constexpr std::string_view kCandidates[] = {
    kProbeInterface,
    kProbeIpv4,
    kProbeIpv6,
    "255.255.255.0",
    "fe80::1",
    "02:00:5e:00:53:01",
    "0",
    "1",
    "24",
    "1500",
    "true",
    "false",
    "",
};

// The words of the enumerations among a type and those that it is made of.
void add_words(const lysc_type* type, std::vector<std::string>& words) {
  if (type->basetype == LY_TYPE_ENUM) {
    const auto* enums = reinterpret_cast<const lysc_type_enum*>(type)->enums;
    std::for_each(enums, enums + LY_ARRAY_COUNT(enums),
                  [&](const lysc_type_bitenum_item& item) { words.emplace_back(item.name); });
  } else if (type->basetype == LY_TYPE_LEAFREF) {
    add_words(reinterpret_cast<const lysc_type_leafref*>(type)->realtype, words);
  } else if (type->basetype == LY_TYPE_UNION) {
    const auto* types = reinterpret_cast<const lysc_type_union*>(type)->types;
    std::for_each(types, types + LY_ARRAY_COUNT(types),
                  [&](const lysc_type* member) { add_words(member, words); });
  }
}

bool accepts(const Models& models, const lysc_node* leaf, std::string_view value) {
  const auto result = lyd_value_validate(models.context(), leaf, value.data(), value.size(),
                                         nullptr, nullptr, nullptr);
  // Whether what a reference refers to is there is another matter.
  return result == LY_SUCCESS || result == LY_EINCOMPLETE;
}

std::vector<std::string> find_values(const Models& models, const lysc_node* leaf) {
  const QuietLog quiet;
  std::vector<std::string> values;
  // A leaf-list has its type in the same place.
  add_words(reinterpret_cast<const lysc_node_leaf*>(leaf)->type, values);
  for (const std::string_view candidate : kCandidates) {
    if (accepts(models, leaf, candidate)) {
      values.emplace_back(candidate);
    }
  }
  ly_err_clean(const_cast<ly_ctx*>(models.context()), nullptr);
  if (values.empty()) {
    values.emplace_back(kProbeInterface);
  }
  return values;
}

}  // namespace

const std::vector<std::string>& Probes::values(const lysc_node* leaf) {
  const auto [known, is_new] = values_.try_emplace(leaf);
  if (is_new) {
    known->second = find_values(models_, leaf);
  }
  return known->second;
}

DocumentNode Probes::node(SchemaPath path) {
  DocumentNode made = node_of(path.front());
  const SchemaPath below = path.subspan(1);
  if (below.empty()) {
    return made;
  }
  for (const std::string& key : Models::keys(made.schema)) {
    DocumentNode leaf = node_of(models_.child(made.schema, key, {}));
    if (leaf.schema != below.front()) {
      leaf.value = values(leaf.schema).front();
      made.children.push_back(std::move(leaf));
    }
  }
  insert_in_order(made, node(below));
  return made;
}

std::vector<WrittenNode> beyond(std::vector<WrittenNode> written, std::vector<WrittenNode> others) {
  std::sort(written.begin(), written.end());
  std::sort(others.begin(), others.end());
  std::vector<WrittenNode> more;
  std::set_difference(written.begin(), written.end(), others.begin(), others.end(),
                      std::back_inserter(more));
  return more;
}

DocumentNode& insert_in_order(DocumentNode& parent, DocumentNode child) {
  const auto next = std::find_if(
      parent.children.begin(), parent.children.end(), [&](const DocumentNode& sibling) {
        return Models::position(sibling.schema) > Models::position(child.schema);
      });
  return *parent.children.insert(next, std::move(child));
}

DocumentNode& probe_end(DocumentNode& top, SchemaPath path) {
  DocumentNode* node = &top;
  for (const lysc_node* step : path.subspan(1)) {
    node = &*std::find_if(node->children.begin(), node->children.end(),
                          [&](const DocumentNode& child) { return child.schema == step; });
  }
  return *node;
}

}  // namespace ocifip
