// Choosing the part of a document that a query asks for.
#ifndef OCIFIP_HOST_IO_SELECT_DATA_H_
#define OCIFIP_HOST_IO_SELECT_DATA_H_

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

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
// Whether a query's node is such a leaf, or a key that chooses.
bool chooses(const DocumentNode& node);
// Whether there is nothing else in a query's node.
bool only_chooses(const DocumentNode& query);

// What follows in a selection.
struct SelectedPart {
  enum class Kind : std::uint8_t {
    kNodes,  // nodes with all that is selected of them
    kBegin,  // a node, bare, that is around all that comes before its end
    kEnd
  };
  Kind kind;
  std::vector<DocumentNode> nodes;
};

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

// Selects as select_data() or select_chosen() do, a while at a time.
class SelectionInSteps {
 public:
  using Clock = std::chrono::steady_clock;
  struct Terms {
    bool values_choose;  // as of select_chosen()
    bool with_state;     // without, neither state comes nor the containers that have nothing else
  };

  // The data and the query outlive the selection, and stay as they are.
  SelectionInSteps(const Document& data, const Document& query, Terms terms);
  ~SelectionInSteps();
  SelectionInSteps(const SelectionInSteps&) = delete;
  SelectionInSteps& operator=(const SelectionInSteps&) = delete;

  // Goes on until then, at least by one node, and adds what is selected. Whether there is more to
  // do; it is not called any more when there is not.
  bool go_on(Clock::time_point end, std::vector<SelectedPart>& parts);

 private:
  class Walk;

  std::unique_ptr<Walk> walk_;
};

// As select_data(), but what a query names without anything below it is selected by itself: entries
// with their keys, and nothing of containers.
Document select_named(const Document& data, const Document& query);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_SELECT_DATA_H_
