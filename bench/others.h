// What else does such work: libyang, which parses and prints the data, and an XSLT stylesheet,
// which maps it.
#ifndef OCIFIP_BENCH_OTHERS_H_
#define OCIFIP_BENCH_OTHERS_H_

#include <libxml/tree.h>
#include <libxslt/xsltInternals.h>
#include <libyang/libyang.h>

#include <memory>
#include <string>

namespace ocifip::bench {

template <auto kFree>
struct Free {
  template <class T>
  void operator()(T* owned) const {
    kFree(owned);
  }
};
using LibyangTree = std::unique_ptr<lyd_node, Free<lyd_free_all>>;
using XmlDocument = std::unique_ptr<xmlDoc, Free<xmlFreeDoc>>;
using Stylesheet = std::unique_ptr<xsltStylesheet, Free<xsltFreeStylesheet>>;

// All throw std::runtime_error.

// Parses data without validating it: an edit is a part of a configuration.
LibyangTree parse(const ly_ctx* models, const std::string& text, LYD_FORMAT format);
std::string print(const LibyangTree& tree, LYD_FORMAT format);

// A stylesheet, and a document that it transforms.
class Transformation {
 public:
  Transformation(const char* stylesheet_file, const std::string& xml);

  // From tree to tree.
  [[nodiscard]] XmlDocument transformed() const;
  // The tree that comes of it, printed without blanks between its elements.
  [[nodiscard]] std::string result() const;

 private:
  Stylesheet stylesheet_;
  XmlDocument document_;
};

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_OTHERS_H_
