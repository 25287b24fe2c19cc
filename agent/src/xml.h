// XML text and trees, by libxml2.
#ifndef OCIFIP_AGENT_XML_H_
#define OCIFIP_AGENT_XML_H_

#include <libxml/tree.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ocifip::agent {

// Text that is not taken as XML; what() is a sentence.
class XmlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct XmlDeleter {
  void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
};
using XmlDocument = std::unique_ptr<xmlDoc, XmlDeleter>;

// Call it once before several threads read XML.
void begin_xml();

// Reads a document with one element at the top, which nobody has to look for. Elements may be
// nested 256 deep, and tags be 16 KiB long: the parser's time grows with the square of the number
// of attributes in one. A document type is refused, and with it all entities but XML's own. Throws
// XmlError.
XmlDocument parse_xml(std::string_view text);

// The element at the top.
const xmlNode* top(const XmlDocument& document);
// The elements right below a node.
std::vector<const xmlNode*> elements(const xmlNode* node);

// Views of the tree.
std::string_view name_of(const xmlNode* element);
std::string_view namespace_of(const xmlNode* element);  // "" for none
bool is_named(const xmlNode* element, std::string_view name_space, std::string_view name);

// The text in an element, without blanks around it.
std::string text_of(const xmlNode* element);
// The value of an attribute that has no namespace, or that of NETCONF, if there is one.
std::optional<std::string> attribute(const xmlNode* element, const char* name);

std::string value_of(const xmlAttr* attribute);
std::string_view attribute_name(const xmlAttr* attribute);

// Prefixes and what they mean at the place of an element; "" is the prefix of the default.
using Namespaces = std::vector<std::pair<std::string, std::string>>;
Namespaces namespaces_at(const xmlNode* element);

// A document of an element, with all namespaces that are known at its place.
XmlDocument copy_of(const xmlNode* element);

// An element as text that stands for itself: with all namespaces that are known at its place, which
// values may refer to.
std::string print(const xmlNode* element);

// What is in an element, in another one of NETCONF's namespace: with all namespaces that are known
// there, which values may refer to. Of leaves, blanks around texts are left out if that is asked
// for. Of the elements in it, those that `keeps` says no to are left out.
enum class Blanks : std::uint8_t { kKept, kTrimmed };
std::string print_content(const xmlNode* element, std::string_view name, Blanks blanks,
                          const std::function<bool(const xmlNode*)>& keeps = {});

// Text between tags, and in double quotes.
std::string escaped(std::string_view text);
// An attribute's value, whose line feeds and tabs stay what they are.
std::string escaped_value(std::string_view value);
// <NAME>TEXT</NAME>
std::string element(std::string_view name, std::string_view text);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_XML_H_
