#include "others.h"

#include <libxml/parser.h>
#include <libxslt/transform.h>
#include <libxslt/xsltutils.h>

#include <cstdlib>
#include <stdexcept>

namespace ocifip::bench {

LibyangTree parse(const ly_ctx* models, const std::string& text, LYD_FORMAT format) {
  lyd_node* tree = nullptr;
  if (lyd_parse_data_mem(models, text.c_str(), format, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0,
                         &tree) != LY_SUCCESS) {
    throw std::runtime_error(std::string("libyang: ") + ly_errmsg(models));
  }
  return LibyangTree(tree);
}

std::string print(const LibyangTree& tree, LYD_FORMAT format) {
  char* text = nullptr;
  if (lyd_print_mem(&text, tree.get(), format, LYD_PRINT_WITHSIBLINGS | LYD_PRINT_SHRINK) !=
      LY_SUCCESS) {
    throw std::runtime_error("libyang cannot print the data");
  }
  const std::unique_ptr<char, Free<std::free>> owned(text);
  return text;
}

Transformation::Transformation(const char* stylesheet_file, const std::string& xml)
    : stylesheet_(xsltParseStylesheetFile(reinterpret_cast<const xmlChar*>(stylesheet_file))),
      document_(xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "request.xml", nullptr,
                              XML_PARSE_NOBLANKS | XML_PARSE_HUGE)) {
  if (stylesheet_ == nullptr || document_ == nullptr) {
    throw std::runtime_error("the stylesheet or its input cannot be read");
  }
}

XmlDocument Transformation::transformed() const {
  XmlDocument result(xsltApplyStylesheet(stylesheet_.get(), document_.get(), nullptr));
  if (result == nullptr) {
    throw std::runtime_error("the stylesheet fails");
  }
  return result;
}

std::string Transformation::result() const {
  xmlChar* text = nullptr;
  int length = 0;
  xsltSaveResultToString(&text, &length, transformed().get(), stylesheet_.get());
  const std::unique_ptr<xmlChar, Free<std::free>> owned(text);
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)};
}

}  // namespace ocifip::bench
