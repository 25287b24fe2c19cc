// What requests have of the native models, which no mapping takes.
#ifndef OCIFIP_HOST_MAPPING_NATIVE_INPUT_H_
#define OCIFIP_HOST_MAPPING_NATIVE_INPUT_H_

#include <optional>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

// Which nodes a request may have.
enum class Views { kOpenConfig, kBoth };

// Whether a top-level node is of the native models.
bool is_native_root(const DocumentNode& root);

// Moves top-level nodes of the native models out of a document: those that can be configuration, or
// all of them.
enum class NativeNodes { kConfiguration, kAll };
Document take_native(Document& document, NativeNodes which);

// Throws InputError for what the models do not know or accept in an edit of native nodes, for
// state, and for names that are none of interfaces.
void check_native_edit(const Models& models, Document& edit);

// Throws InputError for what the models do not know in a query, and for operations.
void check_native_query(const Models& models, Document& query);

// Gives the nodes of a native edit the operations that they have when others say them: that of the
// node around, or the edit's own. A replace by default is one of each interface's entries that the
// edit names, and, beside these, of each of its topmost nodes.
void settle_native_operations(const Models& models, DefaultOperation operation, Document& edit);

// The refusal of the first deletion of a key whose entry stays.
std::optional<Refusal> find_deleted_key(const Document& edit);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_NATIVE_INPUT_H_
