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
  return name_of(data) == name_of(filter) && (meant.empty() || meant == namespace_of(data));
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

// Whether an element asks for a value with an attribute, so that nothing of what it is in is
// chosen.
bool has_impossible_match(const xmlNode* filter) {
  const auto children = elements(filter);
  return std::any_of(children.begin(), children.end(), [](const xmlNode* child) {
    return child->properties != nullptr && is_content_match(child);
  });
}

// If there is nothing in a filter's element but what chooses, it would ask for all: only the leaves
// that choose are asked for.
void ask_for_choices(const xmlNode* filter) {
  const auto children = elements(filter);
  if (!std::all_of(children.begin(), children.end(), is_content_match)) return;
  for (const xmlNode* child : children) {
    xmlNewChild(const_cast<xmlNode*>(filter), child->ns, child->name, nullptr);
  }
}

// Takes out of a filter what has attributes, and what would choose more without it. Whether there
// was any.
bool drop_attributes(const xmlNode* filter) {
  bool has_dropped = false;
  for (const xmlNode* child : elements(filter)) {
    bool is_kept = child->properties == nullptr && !has_impossible_match(child);
    if (is_kept && drop_attributes(child)) {
      has_dropped = true;
      is_kept = !elements(child).empty();
      ask_for_choices(child);
    }
    if (is_kept) continue;
    has_dropped = true;
    auto* dropped = const_cast<xmlNode*>(child);
    xmlUnlinkNode(dropped);
    xmlFreeNode(dropped);
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
  XmlDocument copy = copy_of(filter);
  drop_attributes(top(copy));
  return copy;
}

}  // namespace ocifip::agent
