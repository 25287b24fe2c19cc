// What a client asks for in one word, leaf by leaf.
#ifndef OCIFIP_HOST_MAPPING_QUERY_EXPANSION_H_
#define OCIFIP_HOST_MAPPING_QUERY_EXPANSION_H_

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "mapping/probe.h"
#include "ocifip/host.h"

namespace ocifip {

// Expands containers and entries that a query names without naming anything below them into the
// leaves below them. Left out are leaves that the mapping refuses, and state when configuration is
// asked for; a leaf that is named stays in any case. An interface or subinterface without its key
// stands for all that the device has. Of the interface itself nothing is asked for.
class QueryExpansion {
 public:
  // Whether the mapping refuses a read of the leaf at the end of a schema path.
  using IsRefused = std::function<bool(SchemaPath)>;

  // `interface_names` are native names, "Eth1" or "Eth1.20".
  QueryExpansion(const Models& models, Content content,
                 const std::vector<std::string>& interface_names, IsRefused is_refused)
      : models_(models),
        content_(content),
        interface_names_(interface_names),
        is_refused_(std::move(is_refused)) {}

  void expand(Document& document, std::vector<std::string>& notes);

 private:
  void expand_node(DocumentNode& node);
  void expand_children(DocumentNode& node);
  void add_below(DocumentNode& node);
  void add_leaves(DocumentNode& node);
  void multiply_entries(DocumentNode& node);
  [[nodiscard]] std::vector<std::string> keys_on_device(const DocumentNode& entry);
  void sort_names();
  [[nodiscard]] bool is_wanted(const lysc_node* leaf);
  [[nodiscard]] bool is_left_alone(const DocumentNode& node) const;

  const Models& models_;
  Content content_;
  const std::vector<std::string>& interface_names_;
  IsRefused is_refused_;
  std::vector<std::string> interfaces_;                                // of the device, in order
  std::unordered_map<std::string, std::vector<std::string>> indexes_;  // of their subinterfaces
  std::vector<const lysc_node*> schema_path_;
  std::vector<const DocumentNode*> nodes_;  // those of schema_path_ that stood in the document
  std::vector<std::string>* notes_ = nullptr;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_QUERY_EXPANSION_H_
