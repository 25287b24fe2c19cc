#include "mapping/read_back_probe.h"

#include <algorithm>
#include <iterator>

#include "io/document_nodes.h"
#include "mapping/subinterfaces.h"
#include "result_codes.h"

namespace ocifip {

std::vector<WrittenNode> ReadBackProbe::written_from(SchemaPath native) const {
  auto written = written_from(native, false);
  return written.empty() ? written_from(native, true) : written;
}

std::vector<WrittenNode> ReadBackProbe::written_from(SchemaPath native, bool siblings) const {
  const SchemaPath above = native.first(native.size() - 1);
  DocumentNode top = surroundings(native, siblings);
  const auto without = read_back_of(top);
  DocumentNode& leaf = insert_in_order(probe_end(top, above), node_of(native.back()));
  std::vector<WrittenNode> written;
  for (const std::string& value : probes_.values(native.back())) {
    leaf.value = value;
    std::ranges::move(beyond(read_back_of(top), without), std::back_inserter(written));
  }
  return written;
}

// What a leaf stands in, without the leaf: the entries with their keys, and its siblings if wanted.
DocumentNode ReadBackProbe::surroundings(SchemaPath native, bool siblings) const {
  const SchemaPath above = native.first(native.size() - 1);
  DocumentNode top = probes_.node(native);
  DocumentNode& parent = probe_end(top, above);
  std::erase_if(parent.children,
                [&](const DocumentNode& child) { return child.schema == native.back(); });
  for (const lysc_node* sibling : probes_.models().children(above.back())) {
    const bool is_wanted = siblings && Models::is_leaf(sibling) && !Models::is_key(sibling);
    if (is_wanted && sibling != native.back()) {
      insert_in_order(parent, node_of(sibling)).value = probes_.values(sibling).front();
    }
  }
  return top;
}

// Nothing comes of data that the mapping turns down.
std::vector<WrittenNode> ReadBackProbe::read_back_of(const DocumentNode& top) const {
  Document document;
  document.roots.push_back(top);
  const InputTree input(document, Operation::kWrite);
  std::vector<WrittenNode> written;
  Request request(framework_, input,
                  {.request_op = YFW_MAP_REQUEST_READ_STATE, .written = &written});
  enter_subinterfaces(request, subinterfaces_in(document.roots));
  return read_back(request, entries_) == kOk ? written : std::vector<WrittenNode>();
}

}  // namespace ocifip
