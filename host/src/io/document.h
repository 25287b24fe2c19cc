// A data tree as a client sends it or is shown it: what JSON, XML and instance paths are read into
// and printed from. It knows nothing of the mapping.
#ifndef OCIFIP_HOST_IO_DOCUMENT_H_
#define OCIFIP_HOST_IO_DOCUMENT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "io/name.h"

struct lysc_node;

namespace ocifip {

// Edit operations, in the numbers that the mapping contract gives them.
enum class Operation : std::uint8_t {
  kWrite = 0,
  kReplace = 1,
  kDelete = 3,
  kRemove = 4,
  kNone = 5
};

enum class NodeKind : std::uint8_t { kContainer = 1, kList = 2, kLeaf = 3, kLeafList = 4 };

struct DocumentNode {
  Name tag;
  Name module;            // name of the node's module; "" when no model knows the namespace
  Name module_namespace;  // its namespace; for an unknown JSON module, the module's name
  NodeKind kind = NodeKind::kContainer;
  std::optional<Operation> operation;  // the node's own annotation, not what it inherits
  bool may_be_missing = false;         // of a deletion: that there is nothing to delete is no error
  int line = 0;                        // where it stands in its source, 0 when unknown
  int place = 0;            // among the nodes of its source, from 1; 0 for one that was made
  bool is_created = false;  // of a write: that there is something already is an error
  std::optional<std::string> value;    // a leaf's text; absent when the client gave none
  const void* cause = nullptr;         // of a deletion: those with the same one are one request's
  const lysc_node* schema = nullptr;   // null when no model knows the node
  std::vector<DocumentNode> children;  // in schema order, list keys first, unknown nodes last
};

// What a document is for. In a filter, nodes may come twice, and be of other kinds than the models
// have.
enum class DocumentUse : std::uint8_t { kData, kFilter };

// What NETCONF puts around a document: an edit; a read with a filter or of everything, of state or
// of configuration alone; or a reply.
enum class Envelope : std::uint8_t {
  kNone,
  kEdit,
  kRead,
  kReadAll,
  kReadConfig,
  kReadAllConfig,
  kReply
};

struct Document {
  std::string name;                 // of the source, for messages
  std::vector<DocumentNode> roots;  // top-level nodes
  Envelope envelope = Envelope::kNone;
  std::optional<Operation> operation{};  // of an edit's envelope: its default operation
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DOCUMENT_H_
