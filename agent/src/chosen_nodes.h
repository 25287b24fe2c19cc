// Nodes of data that are chosen, and printing them.
#ifndef OCIFIP_AGENT_CHOSEN_NODES_H_
#define OCIFIP_AGENT_CHOSEN_NODES_H_

#include <string_view>
#include <unordered_set>
#include <vector>

#include "selection.h"
#include "xml.h"

namespace ocifip::agent {

// Data as a tree whose top elements are those of the data.
XmlDocument tree_of(std::string_view data);
std::vector<const xmlNode*> top_elements(const XmlDocument& tree);

// Nodes that are chosen with all that is below them, and those on the way to them.
struct Chosen {
  std::unordered_set<const xmlNode*> whole;
  std::unordered_set<const xmlNode*> way;

  void add(const xmlNode* node) {
    whole.insert(node);
    for (node = node->parent; node != nullptr && node->type == XML_ELEMENT_NODE;
         node = node->parent) {
      if (!way.insert(node).second) break;
    }
  }
};

// All that is chosen, with the way to it.
Elements print_chosen(const XmlDocument& tree, const Chosen& chosen);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_CHOSEN_NODES_H_
