// Puts a document together from its parts as a reader comes across them.
#ifndef OCIFIP_HOST_IO_TREE_BUILDER_H_
#define OCIFIP_HOST_IO_TREE_BUILDER_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

// How deep nodes may be nested. It bounds everything that descends into a document.
constexpr std::size_t kDeepestNode = 256;

class TreeBuilder {
 public:
  // `name` is the source's, for messages. The models must outlive the builder.
  TreeBuilder(const Models& models, std::string name, DocumentUse use = DocumentUse::kData);

  // `kind` is what programs are told of the fault.
  [[noreturn]] void fail(int line, const std::string& reason,
                         InputFault::Kind kind = InputFault::Kind::kMalformed) const;
  // The same with the tag of the node or attribute, and the path of the node, or of the innermost
  // open one for null.
  [[noreturn]] void fail_at(int line, const std::string& reason, InputFault::Kind kind,
                            std::string_view tag, const DocumentNode* node = nullptr) const;

  // Where the innermost open node is, or one below it, to be put behind a reason:
  // ", at /interfaces/interface[name='Eth1']"; "" at the top. Keys that come later are not known.
  [[nodiscard]] std::string here(const DocumentNode* node = nullptr) const;

  // A node below the innermost open one, named as in JSON ("tag" or "module:tag") or as in XML.
  // Without a module it is the parent's, else one of the only other module that has such a child.
  // Throws InputError when there are several, and when the name cannot be a node's.
  [[nodiscard]] DocumentNode json_node(std::string_view member, int line) const;
  [[nodiscard]] DocumentNode xml_node(std::string_view module_namespace, std::string_view tag,
                                      int line) const;

  // The child of a node, or the top-level node for null, that has a name in some module; null when
  // there is none. Throws InputError when there are several; `where` says where, as " in /a/b".
  [[nodiscard]] const lysc_node* only_child(const lysc_node* parent, std::string_view tag, int line,
                                            const std::string& where = {}) const;

  // Gives a node the operation with a name of RFC 6241. Throws InputError.
  void annotate(DocumentNode& node, std::string_view operation, int line) const;

  // Opens a node: what follows, up to the matching close, is below it. Throws InputError when nodes
  // are nested too deeply, and, when a node is closed, for one below it that is of another kind
  // than the model's, or that is there twice, but for a filter.
  void open(DocumentNode node);
  void close();
  void add(DocumentNode node);  // a node without children

  [[nodiscard]] bool at_top() const { return open_.empty(); }
  [[nodiscard]] DocumentNode& current() { return open_.back().node; }

  // The nodes below the innermost open one so far, or the top-level nodes, in the source's order.
  [[nodiscard]] std::span<DocumentNode> children();

  // The document, when every node is closed. Throws InputError as close() does.
  [[nodiscard]] Document finish();

 private:
  struct Open {
    DocumentNode node;
    std::size_t first_child;  // place in pending_
  };

  [[nodiscard]] std::string path(const DocumentNode* node) const;
  void check_depth(int line) const;
  void check_siblings(std::span<DocumentNode> nodes) const;
  void check_kind(const DocumentNode& node) const;

  const Models& models_;
  std::string name_;
  DocumentUse use_;
  std::vector<Open> open_;
  // Closed nodes whose parents are open: a parent takes its own off the end when it is closed, so
  // that no list of children is larger than it has to be.
  std::vector<DocumentNode> pending_;
  int count_ = 0;  // of the nodes so far
};

// Puts them back into schema order.
void arrange_all(std::vector<DocumentNode>& nodes);

// Puts the children of a node into schema order: keys first, unknown nodes last.
void arrange(std::vector<DocumentNode>& children);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_TREE_BUILDER_H_
