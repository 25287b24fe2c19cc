// Reading documents: RFC 7951 JSON with RFC 7952 metadata, NETCONF XML, and instance paths.
#ifndef OCIFIP_HOST_IO_READ_DOCUMENT_H_
#define OCIFIP_HOST_IO_READ_DOCUMENT_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

// Reads a document. Nodes that no model knows and values that a type would not accept are kept as
// they came; only malformed text and structure that cannot be represented are errors.
//
// A node's kind is what the text makes of it: JSON objects are containers, or list entries in an
// array; scalars are leaves, or values of a leaf-list in an array. XML, which has elements alone,
// leaves it to the schema, unless the content (text or elements) says otherwise. null, [null] and,
// when it is deleted or removed, an XML element without text are a leaf without a value; a leaf of
// type empty has the value "" then. A kind that is not the model's, such as a value where a
// container belongs, is an error, and so is a node that comes twice; but in a filter, in
// XML, they are kept. Throws InputError ("NAME:LINE: reason").
Document read_document(const Models& models, const Source& source,
                       DocumentUse use = DocumentUse::kData);

// The same of a document that is then checked, by a function that throws InputError and may be
// called twice. Nodes have no lines afterwards, which takes less time; messages have them.
Document read_checked(const Models& models, const Source& source,
                      const std::function<void(Document& document)>& check);

// Turns an instance path, "/interfaces/interface[name='Eth1']/subinterfaces", into a document that
// holds the named nodes and their keys, and nothing else. Steps may carry a module prefix
// ("openconfig-if-ip:ipv4"); without one a step is looked up by name. The value of a key needs
// quotes only for blanks, brackets and quotes in it. A list step without keys stands for all
// entries. `operation`, when given, is that of the node that the path names; then only the last
// step may stand for all entries. Throws InputError naming the path and the place.
Document read_path(const Models& models, const std::string& path,
                   std::optional<Operation> operation = std::nullopt);

struct BodyOperation {
  Operation name;
  bool creates = false;  // a write of what must not be there
};

// Reads the body of an instance path, its content: the children of a container or entry, as a JSON
// object or XML elements; the value of a leaf, or an array of entries or values, as JSON. The
// document is that of the path. `operation`, when given, is that of the node that the path names,
// unless the body gives it one. Throws InputError, also for a body that names other keys.
Document read_body(const Models& models, const PathBody& body,
                   std::optional<BodyOperation> operation = std::nullopt);

// Adds a document's nodes to another's: entries with the same keys, and containers of the same
// name, are joined; a leaf of the second replaces the first's. Throws InputError for a node that
// one of them deletes and the other does not.
void merge_document(Document& target, Document addition);

// The documents as one, joined in pairs: the time grows with their size, and not with its square.
Document merged(std::vector<Document> documents);

// Joins the parts of one edit. Throws InputError for two values of one leaf, too.
void merge_edit(Document& target, Document addition);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_READ_DOCUMENT_H_
