// Choosing the part of a document that a query asks for.
#ifndef OCIFIP_HOST_IO_SELECT_DATA_H_
#define OCIFIP_HOST_IO_SELECT_DATA_H_

#include <memory>

#include "io/document.h"

namespace ocifip {

// Copies what a query selects. Each of its nodes selects the nodes of that name, of entries those
// with the keys that it gives; where it names something below, only that. A value of a leaf that is
// no key chooses nothing. Entries come with their keys, containers only if something in them does.
// The order is the data's. The time grows with the sizes of both, whatever the numbers of entries.
Document select_data(const Document& data, const Document& query);

// The same where values of other leaves choose, too, as RFC 6241 has it in section 6: nothing is
// selected of a container or entry in which a leaf that the query gives a value has another one, or
// is not there; all of it when the query names nothing but such leaves, and keys, in it. An entry
// in which nothing is selected does not come, unless the query names a key of it.
Document select_chosen(const Document& data, const Document& query);

// Whether a query's node is a leaf that is no key, with a value: one by which select_chosen()
// chooses what it is in.
bool is_value_choice(const DocumentNode& node);
// Whether there is nothing else in a query's node but such leaves, and keys that choose.
bool only_chooses(const DocumentNode& query);

// Selects from the same data again and again, as select_data() does: the time grows with what is
// selected, and not with the length of lists of which entries are asked for by all of their keys.
class DataSelector {
 public:
  // The data outlives the selector, and stays as it is.
  explicit DataSelector(const Document& data);
  ~DataSelector();
  DataSelector(const DataSelector&) = delete;
  DataSelector& operator=(const DataSelector&) = delete;

  [[nodiscard]] Document select(const Document& query);

 private:
  class Lists;

  const Document& data_;
  std::unique_ptr<Lists> lists_;
};

// As select_data(), but what a query names without anything below it is selected by itself: entries
// with their keys, and nothing of containers.
Document select_named(const Document& data, const Document& query);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_SELECT_DATA_H_
