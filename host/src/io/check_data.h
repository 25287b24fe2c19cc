// Holding a document against the models, as data.
#ifndef OCIFIP_HOST_IO_CHECK_DATA_H_
#define OCIFIP_HOST_IO_CHECK_DATA_H_

#include <optional>
#include <string>

#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// What is wrong with a document, and where.
struct DataFault {
  std::string tag;     // of the node that is wrong, or of the one that lacks something
  std::string path;    // its instance path
  int line = 0;        // where it stands in its source, 0 when unknown
  std::string reason;  // in one line
};

// Finds the first node that the models would not accept as data: one that they do not know, one
// with an operation, an entry without its keys, a leaf without a value or with one that its type
// refuses; then, of the whole, whatever libyang's validation finds (mandatory nodes, numbers of
// entries, references, conditions). Modules of which the document has no node count as absent, and
// nothing is asked of the content of anydata.
std::optional<DataFault> check_data(const Models& models, const Document& document);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_CHECK_DATA_H_
