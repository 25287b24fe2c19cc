// Finding out what edits and reads of one leaf become.
#ifndef OCIFIP_HOST_MAPPING_LEAF_PROBE_H_
#define OCIFIP_HOST_MAPPING_LEAF_PROBE_H_

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "mapping/probe.h"
#include "ocifip/host.h"
#include "request/request.h"

namespace ocifip {

// What several probes of a leaf in one use came to.
class LeafFinding {
 public:
  void add(cerrno result, const std::vector<WrittenNode>& written);

  // Mapped is what is mapped in any of them.
  [[nodiscard]] LeafUse use() const;

 private:
  std::set<const Place*> places_;
  std::optional<cerrno> refusal_;
};

class LeafProbe {
 public:
  // The path leads to an OpenConfig leaf, `written` may be empty; the rest outlives the probe.
  LeafProbe(const Framework& framework, yfw_map_leaf_callback mapping, Probes& probes,
            SchemaPath path, const WriteObserver& written)
      : framework_(framework),
        mapping_(mapping),
        probes_(probes),
        path_(path.begin(), path.end()),
        written_(written) {}

  // Has the mapping merge, replace, delete and read the leaf, as the active device is.
  void run();

  [[nodiscard]] const LeafFinding& edit() const { return edit_; }
  [[nodiscard]] const LeafFinding& read() const { return read_; }
  // A read of configuration alone.
  [[nodiscard]] const LeafFinding& read_config() const { return read_config_; }

 private:
  struct Mapped {
    cerrno result;
    std::vector<WrittenNode> written;
  };

  [[nodiscard]] const lysc_node* leaf() const { return path_.back(); }
  [[nodiscard]] SchemaPath entry() const;
  [[nodiscard]] SchemaPath way() const;
  [[nodiscard]] DocumentNode with_value(const std::string& value) const;
  [[nodiscard]] DocumentNode deletion() const;
  [[nodiscard]] Mapped map(DocumentNode top, RequestSettings settings) const;
  void probe(LeafFinding& finding, DocumentNode top, const RequestSettings& settings) const;

  const Framework& framework_;
  yfw_map_leaf_callback mapping_;  // takes an OpenConfig request
  Probes& probes_;
  std::vector<const lysc_node*> path_;
  const WriteObserver& written_;
  LeafFinding edit_;
  LeafFinding read_;
  LeafFinding read_config_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_LEAF_PROBE_H_
