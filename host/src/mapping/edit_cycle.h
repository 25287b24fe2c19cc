// The edit cycle: a client's edit through the mapping to the native edit, and on to the device.
#ifndef OCIFIP_HOST_MAPPING_EDIT_CYCLE_H_
#define OCIFIP_HOST_MAPPING_EDIT_CYCLE_H_

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "device/device_directory.h"
#include "device/native_removal.h"
#include "mapping/edit_parts.h"
#include "mapping/plugin.h"
#include "mapping/subtrees.h"
#include "ocifip/host.h"
#include "request/request.h"

namespace ocifip {

// Reads of the device's configuration that an edit makes on its own account.
struct ConfigurationReads {
  // Completes a read with the leaves that it asks for; false when there are none.
  std::function<bool(Document& read)> expand;
  // What a read that was expanded asks of the native configuration. Throws ReadRefused.
  std::function<Document(const Document& expanded)> native_queries;
  // The OpenConfig answer to such a read. Throws ReadRefused.
  std::function<Document(const Document& expanded)> answer;
};

// Why such a read cannot be made, nor what it was made for.
struct ReadRefused {
  Refusal refusal;
};

struct MappedEdit {
  Outcome outcome;  // its text are the calls, if these were recorded
  Document native;
  bool is_in_parts = false;  // the native edit was handed over in parts
  bool has_effect = false;
};

// Takes a native edit part by part. It may change a part.
using NativePartTaker = std::function<void(Document& part)>;

// One edit. What a framework adds to what the mapping writes is done here: the mapping is entered
// once for each kind of request that the edit holds, and what a replaced or deleted subtree holds
// on the device goes.
class EditCycle {
 public:
  // All outlive the cycle.
  EditCycle(const Framework& framework, const PluginEntries& plugin, const DeviceDirectory& device,
            const ConfigurationReads& reads)
      : framework_(framework), plugin_(plugin), device_(device), reads_(reads) {}

  // What an edit is mapped for: to show the mapping's calls, which are those for all of the edit,
  // to show the native edit, or to apply that to the device.
  enum class Purpose { kCalls, kNativeEdit, kDevice };

  // Maps an edit. `operation` is that of nodes that say none: a replace is said by the nodes that
  // it is of, and is a merge here. Of the settings, the request's kind and operation are not looked
  // at.
  //
  // A long edit to which nothing of the device is to be added goes to `take`, if there is one, in
  // parts that follow each other: documents of one container with some entries of one list.
  MappedEdit map(Document edit, DefaultOperation operation, Purpose purpose,
                 const RequestSettings& settings, const NativePartTaker& take = {});

  // The refusal of a deletion that the native edit cannot make, given its cause there and its
  // refusal in native terms; nothing when there is nothing to delete in native terms, but on the
  // device all the same. Asked after map().
  [[nodiscard]] std::optional<Refusal> judge_deletion(const void* cause, const Refusal& native);
  // The refusal of the first creation of what is there, or deletion of a single node that is not,
  // or of another one of which the native edit has no trace. Both throw ReadRefused.
  [[nodiscard]] std::optional<Refusal> find_misplaced();
  // The refusal of the first deletion of an entry that a device shows all the same, given reads of
  // that: the device with the edit applied. Throws ReadRefused.
  [[nodiscard]] std::optional<Refusal> find_left(const ConfigurationReads& reads) const;
  [[nodiscard]] bool deletes_entries() const;

 private:
  void map_part(EditPart part, Operation operation, RequestSettings settings,
                const NativePartTaker& take, MappedEdit& mapped);
  void find_traces(const std::vector<DocumentNode>& nodes);
  [[nodiscard]] std::optional<Refusal> find_undeletable() const;
  void complete(MappedEdit& mapped);
  void remove_held(MappedEdit& mapped);
  [[nodiscard]] bool is_complete() const;
  bool each_held(const std::function<bool(const HeldConfiguration&)>& visit) const;
  [[nodiscard]] HeldConfiguration held_configuration(const Document& held,
                                                     const Document& way) const;
  bool drop_absent(std::vector<DocumentNode>& nodes, Operation inherited,
                   std::optional<Refusal>& refusal);
  [[nodiscard]] bool is_on_device(const Subtree& subtree);
  [[nodiscard]] bool is_shown(const Subtree& subtree, const DocumentNode& asked);
  [[nodiscard]] bool holds(const Subtree& subtree) const;
  void read_deleted();

  const Framework& framework_;
  const PluginEntries& plugin_;
  const DeviceDirectory& device_;
  const ConfigurationReads& reads_;
  std::deque<Subtree> subtrees_;
  std::unordered_set<const void*> traces_;  // causes that the native edit has deletions of
  std::unordered_set<const void*> absent_;  // subtrees in entries that are not there
  std::optional<Document> deleted_;         // what the device has of the deleted subtrees
  std::unordered_map<std::string, const DocumentNode*> subinterfaces_;  // there, by native name
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_EDIT_CYCLE_H_
