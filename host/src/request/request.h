// One request: everything that lives from its first callback to its last.
#ifndef OCIFIP_HOST_REQUEST_REQUEST_H_
#define OCIFIP_HOST_REQUEST_REQUEST_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/models.h"
#include "ocifip/host.h"
#include "request/augment_entries.h"
#include "request/hierarchy.h"
#include "request/input_tree.h"
#include "request/recorder.h"
#include "request/stack.h"
#include "tree/arena.h"
#include "tree/output_tree.h"
#include "tree/path_cache.h"
#include "yfw/context.h"

namespace ocifip {

// What the requests of a host have in common.
struct Framework {
  const Models& models;
  PathCache& paths;
  const AugmentEntries& entries;
  Progress* progress = nullptr;
};

// A node that a mapping wrote, and the value that it gave.
struct WrittenNode {
  const Place* place;
  std::string value;

  auto operator<=>(const WrittenNode&) const = default;
};

// Is shown what a mapping writes.
using WriteObserver = std::function<void(const WrittenNode&)>;

struct RequestSettings {
  std::uint32_t request_op = YFW_MAP_REQUEST_MERGE;
  Operation operation = Operation::kWrite;  // of nodes that inherit none
  bool is_query = false;                    // the output asks for data
  bool record_calls = false;
  bool trace = false;
  std::vector<WrittenNode>* written = nullptr;  // takes what the mapping writes
};

// The entry of a native interface, and the subinterface that it is the interface of.
struct NativeInterface {
  std::string name;
  std::string index;
  OutputNode* entry = nullptr;
};

// The containers below a native interface that the last write went through, down to a list.
struct WayBelow {
  OutputNode* interface = nullptr;
  std::vector<OutputNode*> nodes;
};

class Request {
 public:
  // The input lives as long as the request.
  Request(const Framework& framework, const InputTree& input, const RequestSettings& settings);
  ~Request();
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  // The request that a context belongs to.
  static Request& of(yfw_map_ctx* ctx);

  yfw_map_ctx* context() { return &context_.head; }
  [[nodiscard]] yfw_map_request_state& state() { return state_; }
  [[nodiscard]] bool is_edit() const;
  [[nodiscard]] bool is_query() const { return is_query_; }
  [[nodiscard]] const InputTree& input() const { return input_; }
  [[nodiscard]] const AugmentEntries& entries() const { return framework_.entries; }
  [[nodiscard]] PathCache& paths() { return framework_.paths; }
  [[nodiscard]] OutputTree& output() { return output_; }
  [[nodiscard]] nidl_yfw_datatree* out() { return &output_.root()->head; }
  [[nodiscard]] Hierarchy& hierarchy() { return hierarchy_; }
  // A stage of the request begins; `interfaces` are those that it goes through.
  void begin(const char* stage, std::span<const InputNode> interfaces) const;
  // One of them is done.
  void advance() const;
  // Null when calls are not recorded.
  [[nodiscard]] Recorder* recorder() { return recorder_ ? &*recorder_ : nullptr; }
  // What the mapping writes; kept when the settings ask for it.
  void note_written(const Place* place, const char* value) {
    if (written_ != nullptr) {
      written_->push_back({place, value == nullptr ? "" : value});
    }
  }
  // Entries in the output list, the innermost last.
  [[nodiscard]] std::vector<const InputNode*>& output_list() { return output_list_; }

  // Prefix of paths that a base node stands for; empty when none is set.
  [[nodiscard]] const std::string& trim_prefix() const { return trim_prefix_; }
  void set_trim_prefix(std::string prefix) { trim_prefix_ = std::move(prefix); }

  // A copy of an input node, with copies of other nodes for its children. They live as long as the
  // request.
  [[nodiscard]] InputNode& copy(const InputNode& node, std::span<const InputNode* const> children);

  // The cause that the document gives the deletion which an input node, or a copy of one, is part
  // of; null when it gives none.
  [[nodiscard]] const void* cause_of(const InputNode* node) const;

  // Leaves nothing of what was mapped so far current, so that what is mapped next finds its own
  // place.
  void forget_current_entries();

  // Instance path of a child of the node being walked.
  [[nodiscard]] std::string path_of(const InputNode& child) const;

  // Native name of the subinterface being mapped; empty when no interface is.
  [[nodiscard]] std::string native_interface_name() const;
  // The native interface that was written to last.
  [[nodiscard]] NativeInterface& last_native_interface() { return native_interface_; }
  [[nodiscard]] WayBelow& last_way() { return last_way_; }

  // A remark for the user; the same one is kept once.
  void note(const std::string& remark);
  [[nodiscard]] const std::vector<std::string>& notes() const { return notes_; }

  // A line that the mapping wrote to its error channel.
  void add_error_line(std::string line) { error_line_ = std::move(line); }
  // The mapping has gone on since its last error line.
  void forget_error_line() { error_line_.clear(); }

  // Marks the path of the nodes being walked as the one that fails.
  void mark_error_path();
  // Records a refusal on behalf of a mapping that is part of the host; returns the code.
  cerrno refuse(cerrno code, const char* tag, const char* message);
  // Why the mapping's result was not 0.
  [[nodiscard]] Refusal refusal(cerrno code) const;

 private:
  struct Context {
    yfw_map_ctx head;  // first: the contract's pointer is a pointer to this
    Request* owner;
  };

  [[nodiscard]] std::vector<const InputNode*> failing_nodes() const;
  [[nodiscard]] std::string refused_path(std::vector<const InputNode*> nodes,
                                         std::string_view tag) const;
  [[nodiscard]] std::string refusal_message(cerrno code) const;

  Framework framework_;
  const InputTree& input_;
  bool is_query_;
  std::vector<WrittenNode>* written_;
  yfw_map_request_state state_{};
  Context context_{};
  yfw_itree_stack visited_entries_;
  Arena arena_;
  OutputTree output_;
  Hierarchy hierarchy_;
  std::optional<Recorder> recorder_;
  std::unordered_map<const InputNode*, const InputNode*> originals_;  // of copies
  std::vector<const InputNode*> output_list_;
  std::string trim_prefix_;
  NativeInterface native_interface_;
  WayBelow last_way_;
  std::vector<std::string> notes_;
  std::string error_line_;
  std::optional<std::vector<const InputNode*>> failing_nodes_;
};

// Instance path of a node given the nodes from the top down to it.
std::string instance_path(const Models& models, std::span<const InputNode* const> nodes);

}  // namespace ocifip

#endif  // OCIFIP_HOST_REQUEST_REQUEST_H_
