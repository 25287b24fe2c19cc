// What NETCONF puts around a document, against what is done with the document.
#ifndef OCIFIP_HOST_MAPPING_ENVELOPE_CHECKS_H_
#define OCIFIP_HOST_MAPPING_ENVELOPE_CHECKS_H_

#include "io/document.h"
#include "ocifip/host.h"

namespace ocifip {

// Throws InputError for a document that is a NETCONF request or reply of another purpose.
void check_is_edit(const Document& document);
void check_is_data(const Document& document);

// The operation of nodes that carry none. Throws InputError when the document asks for another than
// the request.
DefaultOperation default_operation(const EditRequest& request, const Document& document);

// What a query asks for. Throws InputError for a document that is no query, and when it asks for
// something else than the request.
Content content_of(const QueryRequest& request, const Document& document);

// Whether a document is a query without a filter, which asks for everything.
bool reads_all(const Document& document);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_ENVELOPE_CHECKS_H_
