// The output tree as a document.
#ifndef OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_
#define OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_

#include <string>

#include "io/document.h"
#include "tree/output_tree.h"

namespace ocifip {

// Completes the keys of the tree first: nothing is to be written any more. Children come in schema
// order, keys first. Operations other than a plain write are annotations, but for keys, which have
// none of their own.
Document to_document(OutputTree& tree, std::string name);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_OUTPUT_DOCUMENT_H_
