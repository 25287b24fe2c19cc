// The output tree as a document.
#ifndef OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_
#define OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_

#include <functional>
#include <string>

#include "io/document.h"
#include "tree/output_tree.h"

namespace ocifip {

// Completes the keys of the tree first: nothing is to be written any more. Children come in schema
// order, keys first. Operations other than a plain write are annotations, but for keys, which have
// none of their own.
Document to_document(OutputTree& tree, std::string name);

// The same in parts, which follow each other in the document: each has some of the entries of its
// one long list. A part may be changed, but for its container; the next one is made of its nodes,
// which saves half of what making them new takes. False, and nothing is handed over, when the tree
// is anything else than a container of that list, all of whose entries have their keys and do
// something.
bool to_documents(OutputTree& tree, const std::string& name,
                  const std::function<void(Document& part)>& take);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_
