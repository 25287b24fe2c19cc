// What the host itself asks of a document before the mapping sees it.
#ifndef OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_
#define OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_

#include "io/document.h"
#include "mapping/read_back.h"

namespace ocifip {

// Throws InputError for a top-level node that no mapping takes, and for names of interfaces and
// indexes of subinterfaces that the mapping contract has no room for.
void check_input(const Document& document);

// Throws InputError for a node of a query that carries an operation.
void check_query(const Document& document);

// The same as check_input for native data, of which the plug-in takes some; there, an interface
// needs its name.
void check_native_data(const Document& document, const ReadBackEntries& entries);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_
