// Applying a native edit to a device's native configuration.
#ifndef OCIFIP_HOST_DEVICE_NATIVE_EDIT_H_
#define OCIFIP_HOST_DEVICE_NATIVE_EDIT_H_

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

struct EditedNative {
  Document native;                 // the configuration after the edit
  std::optional<Refusal> refusal;  // set: the edit cannot be applied, and native is empty
};

// Applies an edit with the semantics of NETCONF's edit-config. Each node of the edit has the
// operation that it says, kWrite when it says none; nothing is looked at below a deleted node.
// Refused are: a deletion (kDelete, not kRemove) of which nothing is there, neither itself nor
// another with the same cause; a write below an entry or a container with presence that is not
// there and is not to be made (kNone), a creation of what is there, containers without presence
// aside, an entry that is not named by all of its keys, unless the
// list is deleted as a whole by one without any, and a result that the models would not accept.
//
// The entry of an interface in the edit only leads to what is below it: it is not made without
// content, and need not be there.
//
// `judge_deletion`, when given, is asked of each cause that deletes nothing which is there, and of
// one that deletes below an entry without its keys, with the refusal in terms of the edit. It gives
// the refusal; for what is not there, nothing when the edit may go on.
using JudgeDeletion =
    std::function<std::optional<Refusal>(const void* cause, const Refusal& refusal)>;
EditedNative edit_native(const Models& models, const Document& native, const Document& edit,
                         const JudgeDeletion& judge_deletion = {});

// The same of several edits, one after the other: all of them, or nothing. What comes of them is
// held against the models once.
struct NativeEdit {
  const Document& edit;
  JudgeDeletion judge_deletion{};
  bool names_interfaces = false;  // their entries are meant themselves, as others are
};
EditedNative edit_native(const Models& models, const Document& native,
                         std::span<const NativeEdit> edits);

// What the models do not accept of a configuration; nothing when they accept it.
std::optional<Refusal> find_fault(const Models& models, const Document& native);

// The same for siblings of any tree, without a look at the models. The refusal, or nothing when all
// of it is applied.
std::optional<Refusal> edit_tree(std::vector<DocumentNode>& nodes,
                                 const std::vector<DocumentNode>& edit);

}  // namespace ocifip

#endif  // OCIFIP_HOST_DEVICE_NATIVE_EDIT_H_
