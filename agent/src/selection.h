// Choosing parts of data by subtree filters (RFC 6241, section 6) and XPath expressions.
#ifndef OCIFIP_AGENT_SELECTION_H_
#define OCIFIP_AGENT_SELECTION_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "limited_process.h"
#include "step.h"
#include "xml.h"

namespace ocifip::agent {

// XML elements, one behind the other.
using Elements = std::string;

// Names of the keys of the list at the end of a path from the top: namespaces and names. None for
// another node.
using Path = std::vector<std::pair<std::string, std::string>>;
using ListKeys = std::function<std::vector<std::string>(const Path& path)>;

// What the elements in a filter without attributes select.
Elements select_subtree(std::string_view data, const xmlNode* filter);

// A copy of a filter without what data's attributes would choose: data have none.
XmlDocument without_attributes(const xmlNode* filter);

// An expression, with the prefixes that are known where it stands.
struct XPath {
  std::string text;
  Namespaces namespaces;
};

// The expression in the attribute "select" of a filter. Throws OperationError.
XPath xpath_of(const xmlNode* filter);

// What an expression selects, with all that is below, the entries and containers around it, and
// the keys of entries. It is found in steps, between which others can be served.
class XPathSelection {
 public:
  // `patience`: the processor time that it may take. Throws OperationError.
  XPathSelection(Elements data, XPath xpath, ListKeys keys, std::chrono::seconds patience);

  Step step();
  // What is selected, when all is done. Throws OperationError for an expression that is none,
  // selects no elements, or takes too much.
  Elements finish();

  // The same at once.
  static Elements select_now(Elements data, XPath xpath, ListKeys keys,
                             std::chrono::seconds patience);

 private:
  void begin();

  Elements data_;
  XPath xpath_;
  ListKeys keys_;
  std::chrono::seconds patience_;
  std::optional<Elements> result_;  // of what needs no process
  std::optional<LimitedProcess> process_;
};

// Elements of a subtree filter that select all that an expression can reach, and more; "" when that
// is everything. `places_of`: the paths of the containers and lists that are nodes of a namespace
// and name, or have leaves that are; none when nobody knows.
using NodePlaces =
    std::function<std::vector<Path>(const std::string& name_space, const std::string& name)>;
Elements reach_of(const XPath& xpath, const NodePlaces& places_of);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_SELECTION_H_
