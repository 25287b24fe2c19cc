// The subtrees that an edit replaces or deletes as wholes.
#ifndef OCIFIP_HOST_MAPPING_SUBTREES_H_
#define OCIFIP_HOST_MAPPING_SUBTREES_H_

#include <deque>
#include <optional>
#include <string>

#include "device/device_directory.h"
#include "io/document.h"
#include "io/models.h"
#include "mapping/said_operations.h"

namespace ocifip {

// Of a subtree that is only replaced, just the interface, what is held, and the way are given.
struct Subtree {
  std::string tag;   // of the node at its top
  std::string path;  // instance path of that node
  bool is_deleted = false;
  bool must_be_there = false;   // deleted, not removed, or an entry that is passed through
  bool must_be_absent = false;  // created
  bool is_entry = false;        // of a list below a subinterface
  bool is_single = false;       // a leaf, or such an entry
  bool is_subinterface = false;
  const char* undeletable = nullptr;  // why no mapping can delete it; null when one may
  bool is_read_back = true;           // not VRRP of another address than the interface's own
  // The native name of the subinterface that it is part of; empty when it is part of several.
  std::string interface;
  // Reads: one node without children, with its way and its keys above it.
  DocumentNode all;                   // of the subtree; a leaf-list's has the value that is meant
  std::optional<DocumentNode> held;   // of what the device holds of it and the mapping may leave
  std::optional<DocumentNode> way;    // of the entries around it, when there are any
  std::optional<DocumentNode> entry;  // of a deletion: the innermost of them that reads show
};

// Finds the subtrees of an edit: nodes that an annotation replaces or deletes. Deletions below what
// is replaced are subtrees, too, and are taken out of the edit. Subinterfaces, and entries
// below them, whose operation is "none" are subtrees, too, that have to be there, and leaves and
// entries of IP that are created, which must not. Each deletion gets its subtree as its cause. The
// deletion of an entry's settings, which its keys are among, becomes that of the entry, if nothing
// else of the entry is edited. A replace of what is in a subinterface that the device does not know
// is no subtree: nothing is held of it.
//
// An address and a value of a leaf-list are the mapping's to write and delete, and are no part of
// what it may leave. The VRRP groups of an interface are those of its own address.
//
//   operation  of nodes that say none
//   said       what the nodes of the edit say
std::deque<Subtree> find_subtrees(const Models& models, const DeviceDirectory& device,
                                  Operation operation, const SaidOperations& said, Document& edit);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_SUBTREES_H_
