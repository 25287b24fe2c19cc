#include "selection.h"

#include <algorithm>

#include "chosen_nodes.h"

namespace ocifip::agent {
namespace {

bool is_content_match(const xmlNode* filter) {
  return elements(filter).empty() && !text_of(filter).empty();
}

bool is_same(const xmlNode* data, const xmlNode* filter) {
  const std::string_view meant = namespace_of(filter);
  return name_of(data) == name_of(filter) && (meant.empty() || meant == namespace_of(data)) &&
         filter->properties == nullptr;
}

bool has_match(const xmlNode* data, const xmlNode* match) {
  const auto children = elements(data);
  return std::any_of(children.begin(), children.end(), [&](const xmlNode* child) {
    return is_same(child, match) && text_of(child) == text_of(match);
  });
}

void choose(const std::vector<const xmlNode*>& data, const std::vector<const xmlNode*>& filters,
            Chosen& chosen);

void choose(const xmlNode* data, const xmlNode* filter, Chosen& chosen) {
  const auto filters = elements(filter);
  if (filters.empty()) {
    if (!is_content_match(filter) || text_of(data) == text_of(filter)) chosen.add(data);
    return;
  }
  std::vector<const xmlNode*> others;
  for (const xmlNode* each : filters) {
    if (!is_content_match(each)) {
      others.push_back(each);
    } else if (!has_match(data, each)) {
      return;
    }
  }
  if (others.empty()) {
    chosen.add(data);
  } else {
    choose(elements(data), filters, chosen);
  }
}

void choose(const std::vector<const xmlNode*>& data, const std::vector<const xmlNode*>& filters,
            Chosen& chosen) {
  for (const xmlNode* filter : filters) {
    for (const xmlNode* each : data) {
      if (is_same(each, filter)) choose(each, filter, chosen);
    }
  }
}

// Takes out of a filter what has attributes, and whom that was to choose something in. Whether
// there was any.
bool drop_attributes(xmlNode* filter) {
  bool has_dropped = false;
  for (const xmlNode* each : elements(filter)) {
    auto* child = const_cast<xmlNode*>(each);
    const bool is_changed = each->properties == nullptr && drop_attributes(child);
    const auto left = elements(child);
    const bool is_empty = is_changed && std::all_of(left.begin(), left.end(), is_content_match);
    has_dropped = has_dropped || is_changed || each->properties != nullptr;
    if (each->properties == nullptr && !is_empty) continue;
    xmlUnlinkNode(child);
    xmlFreeNode(child);
  }
  return has_dropped;
}

}  // namespace

Elements select_subtree(std::string_view data, const xmlNode* filter) {
  if (data.empty()) return {};
  const XmlDocument tree = tree_of(data);
  Chosen chosen;
  choose(top_elements(tree), elements(filter), chosen);
  return print_chosen(tree, chosen);
}

XmlDocument without_attributes(const xmlNode* filter) {
  XmlDocument copy = parse_xml(print(filter));
  drop_attributes(xmlDocGetRootElement(copy.get()));
  return copy;
}

}  // namespace ocifip::agent
