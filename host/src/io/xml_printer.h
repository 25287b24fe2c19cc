// Printing documents as XML.
#ifndef OCIFIP_HOST_IO_XML_PRINTER_H_
#define OCIFIP_HOST_IO_XML_PRINTER_H_

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/document.h"
#include "io/print_parts.h"

namespace ocifip {

class XmlPrinter {
 public:
  // Remarks on what is printed are added to notes.
  explicit XmlPrinter(std::vector<std::string>& notes) : notes_(notes) {}

  // The text of a document, as print_document() has it.
  std::string print(const Document& document);

  // Elements one after the other, as print_elements() has them: siblings; and one around all that
  // comes before its end, which has the node's children at its beginning.
  void add(const std::vector<DocumentNode>& siblings);
  void begin(DocumentNode node);
  void end();
  std::string take() { return std::move(out_); }

 private:
  void append_nodes(const std::vector<const DocumentNode*>& nodes);
  void append_node(const DocumentNode& node);
  void append_begin(const DocumentNode& node);
  void append_end(const DocumentNode& node);
  void append_attribute(std::string_view name, std::string_view value);
  void append_text(std::string_view text);

  std::vector<std::string>& notes_;
  std::string out_;
  NodePath path_;
  std::deque<DocumentNode> around_;  // those of the path that have begun
  std::size_t outer_depth_ = 0;      // of elements around the top-level nodes
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_XML_PRINTER_H_
