// Printing documents as JSON, XML and an indented tree.
#ifndef OCIFIP_HOST_IO_PRINT_DOCUMENT_H_
#define OCIFIP_HOST_IO_PRINT_DOCUMENT_H_

#include <string>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

// The text of a document, ending in a line feed; an empty document is "{}" in JSON, and empty text
// in XML and as a tree. Operations other than kWrite become metadata (JSON) or nc:operation
// attributes (XML); kNone is shown by `tree` alone. An entry without its keys is left out of JSON
// and XML, and a sentence that names it is added to notes. Values that a type would not accept are
// printed as they are. `format` is not kCalls.
std::string print_document(const Document& document, Format format,
                           std::vector<std::string>& notes);

// The top-level nodes of a document as XML elements, one behind the other and with nothing around
// them; else as print_document() does.
std::string print_elements(const Document& document, std::vector<std::string>& notes);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_PRINT_DOCUMENT_H_
