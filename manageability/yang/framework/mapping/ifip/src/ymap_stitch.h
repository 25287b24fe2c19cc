// The stitching of the private summaries, which mirror OpenConfig's tree below a top node of their
// own: what a subinterface entry of theirs holds goes to the OpenConfig entry with the same keys.
#ifndef YMAP_STITCH_H_
#define YMAP_STITCH_H_

#include "yfw/context.h"
#include "ymap_frame.h"
#include "ymap_read_back.h"

namespace ymap {

// A private summary: where its entries are, and what is said when one has no key.
struct Summary {
  const char* interfaces;     // path of the list, without keys
  const char* subinterfaces;  // the same
  Message no_name;
  Message no_index;
};

// Makes the subinterface of an interface of the output current, so that what follows is written to
// it. Never makes an entry: returns YMAP_ERR_NO_KEYS when the output lacks the interface or the
// subinterface, else the framework's result.
cerrno stitch_subinterface(const Call& call, const char* name, const char* index);

// The same for the entry of a summary being walked. When a key is missing, says so and returns the
// result of the key's lookup, which is 0 for an absent leaf.
//
// A template because each line of each summary has a word of its own.
template <const Summary& kSummary>
cerrno stitch_entry(const Call& call) {
  const EntryKey name = entry_key(call, kSummary.interfaces, "name");
  if (name.value == nullptr) {
    YMAP_EMIT(call.ctx, call.name, kSummary.no_name);
    return name.result;
  }
  const EntryKey index = entry_key(call, kSummary.subinterfaces, "index");
  if (index.value == nullptr) {
    YMAP_EMIT(call.ctx, call.name, kSummary.no_index);
    return index.result;
  }
  return stitch_subinterface(call, name.value, index.value);
}

}  // namespace ymap

#endif  // YMAP_STITCH_H_
