// Nodes made up to find out what the mapping does with a part of the models.
#ifndef OCIFIP_HOST_MAPPING_PROBE_H_
#define OCIFIP_HOST_MAPPING_PROBE_H_

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "request/request.h"

namespace ocifip {

// The interface and the addresses that stand for any others: values begin with them where a type
// takes them. Of a tunnel, more is read back than of other interfaces.
inline constexpr std::string_view kProbeInterface = "tunnel-ip1";
inline constexpr std::string_view kProbeIpv4 = "192.0.2.1";
inline constexpr std::string_view kProbeIpv6 = "2001:db8::1";

// Schema nodes from the top down.
using SchemaPath = std::span<const lysc_node* const>;

// Makes nodes of the models, each value once.
class Probes {
 public:
  explicit Probes(const Models& models) : models_(models) {}

  [[nodiscard]] const Models& models() const { return models_; }

  // Values that a leaf's type accepts, at least one: every word of an enumeration, and a few
  // numbers, addresses, names and the like. When none of them fits, a text that does not.
  const std::vector<std::string>& values(const lysc_node* leaf);

  // The nodes of a schema path, with keys for its lists; the node at its end has neither value nor
  // children.
  DocumentNode node(SchemaPath path);

 private:
  const Models& models_;
  std::unordered_map<const lysc_node*, std::vector<std::string>> values_;
};

// Puts a node in its place in schema order among the children of another, all known to the models.
DocumentNode& insert_in_order(DocumentNode& parent, DocumentNode child);

// What occurs more often among written nodes than among others.
std::vector<WrittenNode> beyond(std::vector<WrittenNode> written, std::vector<WrittenNode> others);

// The node at the end of a path that was made for it, given the one at its top.
DocumentNode& probe_end(DocumentNode& top, SchemaPath path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_PROBE_H_
