#include "mapping/leaf_probe.h"

#include <utility>

#include "mapping/map_input.h"
#include "result_codes.h"
#include "tree/place_paths.h"

namespace ocifip {

void LeafFinding::add(cerrno result, const std::vector<WrittenNode>& written) {
  if (result == kOk) {
    for (const WrittenNode& node : written) {
      places_.insert(node.place);
    }
  } else if (!refusal_) {
    refusal_ = result;
  }
}

LeafUse LeafFinding::use() const {
  LeafUse use;
  if (!places_.empty()) {
    use.result = LeafUse::Result::kMapped;
    use.native = qualified_paths(places_);
  } else if (refusal_) {
    use.result = LeafUse::Result::kRefused;
    use.code = result_name(*refusal_);
  }
  return use;
}

void LeafProbe::run() {
  for (const std::string& value : probes_.values(leaf())) {
    probe(edit_, with_value(value), {.request_op = YFW_MAP_REQUEST_MERGE});
    probe(edit_, with_value(value),
          {.request_op = YFW_MAP_REQUEST_REPLACE, .operation = Operation::kReplace});
  }
  probe(edit_, deletion(), {.request_op = YFW_MAP_REQUEST_MERGE});
  const DocumentNode query = probes_.node(path_);
  probe(read_, query, {.request_op = YFW_MAP_REQUEST_READ_STATE, .is_query = true});
  probe(read_config_, query, {.request_op = YFW_MAP_REQUEST_READ_CONFIG, .is_query = true});
}

// What is there with the leaf and not without it: of a key, its entry.
SchemaPath LeafProbe::entry() const {
  return SchemaPath(path_).first(path_.size() - (Models::is_key(leaf()) ? 1 : 0));
}

// What leads to it.
SchemaPath LeafProbe::way() const { return entry().first(entry().size() - 1); }

DocumentNode LeafProbe::with_value(const std::string& value) const {
  DocumentNode top = probes_.node(path_);
  probe_end(top, path_).value = value;
  return top;
}

// A key, and a value of a leaf-list, say what is deleted.
DocumentNode LeafProbe::deletion() const {
  const bool names_itself = Models::is_key(leaf()) || Models::kind(leaf()) == NodeKind::kLeafList;
  DocumentNode top =
      names_itself ? with_value(probes_.values(leaf()).front()) : probes_.node(path_);
  probe_end(top, entry()).operation = Operation::kDelete;
  return top;
}

LeafProbe::Mapped LeafProbe::map(DocumentNode top, RequestSettings settings) const {
  Document document;
  document.roots.push_back(std::move(top));
  const InputTree input(document, settings.operation);
  Mapped mapped;
  settings.written = &mapped.written;
  Request request(framework_, input, settings);
  mapped.result = map_input(request, mapping_);
  for (const WrittenNode& node : mapped.written) {
    if (written_) {
      written_(node);
    }
  }
  return mapped;
}

// What the way to the leaf causes by itself is none of the leaf's.
void LeafProbe::probe(LeafFinding& finding, DocumentNode top,
                      const RequestSettings& settings) const {
  const Mapped mapped = map(std::move(top), settings);
  const Mapped without = map(probes_.node(way()), settings);
  finding.add(mapped.result, beyond(mapped.written, without.written));
}

}  // namespace ocifip
