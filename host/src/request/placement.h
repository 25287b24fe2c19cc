// Where the path of a write, or of a search, leads in the output tree.
#ifndef OCIFIP_HOST_REQUEST_PLACEMENT_H_
#define OCIFIP_HOST_REQUEST_PLACEMENT_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "request/request.h"

namespace ocifip {

// A node of the output tree and the steps that lead on from it.
struct Start {
  OutputNode* node;
  Steps steps;
};

// A call of yfw_map_datatree_add_path_flagged; texts are those of the call.
struct PathWrite {
  OutputNode* base;
  std::string_view path;
  std::string_view module_namespace;
  const char* value = nullptr;
  const InputNode* source = nullptr;
  bool create = false;
  std::uint32_t flags = YFW_MAP_PATH_PLAIN;
};

class Placement {
 public:
  explicit Placement(Request& request)
      : request_(request), paths_(request.paths()), tree_(request.output()) {}

  // Creates what is missing along a path, sets the last node's value and operation and stores it.
  // Nothing is created when it fails.
  cerrno write(const PathWrite& write, OutputNode** created);

  // The start of a path that is absolute or relative to a base node; nothing when it cannot be
  // resolved.
  std::optional<Start> start_at(OutputNode* base, std::string_view path,
                                std::string_view module_namespace);

  // Writes a node that has been found or made: its value, unless null, and the operation of a
  // source, or a plain write without one. A write that is part of a deletion changes nothing.
  void put(OutputNode* node, const char* value, const InputNode* source);

  // The node that a step leads to from a parent on the way to another, made when absent. Entries
  // are found by what the request says of them.
  OutputNode* through(OutputNode* parent, const Place* step);
  // The same without making anything; null when it is absent.
  OutputNode* existing(OutputNode* parent, const Place* step);

 private:
  std::optional<Start> find_start(const PathWrite& write);
  OutputNode* under_trim_prefix(const PathWrite& write) const;
  OutputNode* under_current_entry(const PathWrite& write) const;
  void set_value(OutputNode* node, const char* value);
  [[nodiscard]] bool is_mappings_own(const InputNode& source) const;
  [[nodiscard]] bool is_part_of_deletion(const OutputNode* node, const InputNode* source) const;
  void keep_interface(OutputNode* entry);
  [[nodiscard]] bool is_of_another_interface(const OutputNode* entry) const;
  [[nodiscard]] bool stands_for_all(const OutputNode* entry, const Place* key) const;
  std::size_t follow(OutputNode** node, Steps way);
  OutputNode* arrive(OutputNode* parent, const Place* step, const PathWrite& write);
  OutputNode* new_entry(OutputNode* parent, const Place* list);
  OutputNode* entry_on_the_way(OutputNode* parent, const Place* list, bool make);
  OutputNode* native_interface(OutputNode* parent, const Place* list, bool make);
  OutputNode* named_entry(OutputNode* parent, const Place* list, KeyValues values, bool make);

  Request& request_;
  PathCache& paths_;
  OutputTree& tree_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_PLACEMENT_H_
