// What tells one state of a configuration from another.
#ifndef OCIFIP_HOST_IO_DIFFERENCE_H_
#define OCIFIP_HOST_IO_DIFFERENCE_H_

#include <string>

#include "io/document.h"

namespace ocifip {

// The edit that makes the second state of the first: nodes that are new or changed with their
// values, nodes that are gone with kDelete, and what leads to them. Of an entry that is gone its
// keys are there alone, of a leaf its former value. A container without presence says nothing by
// itself: it is there for what is below it, also when it is gone. The order of siblings is no
// difference.
Document difference(const Document& before, const Document& after);

// A difference as text, a line a change: `+ PATH = "VALUE"` for a leaf or value that is new,
// `~ PATH = "OLD" -> "NEW"` for one that is changed, `+ PATH` for another node that is new and has
// nothing below it, and `- PATH` for a node that is gone. `before` is the first state.
std::string print_changes(const Document& difference, const Document& before);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DIFFERENCE_H_
