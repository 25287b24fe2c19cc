// The operations of NETCONF, each a function from its element to what is replied or thrown.
#ifndef OCIFIP_AGENT_OPERATIONS_H_
#define OCIFIP_AGENT_OPERATIONS_H_

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "announcements.h"
#include "client.h"
#include "datastores.h"
#include "ocifip/host.h"
#include "selection.h"
#include "step.h"
#include "xml.h"

namespace ocifip::agent {

// A reply that takes steps, between which others are served.
class LongReply {
 public:
  virtual ~LongReply() = default;

  virtual Step step() = 0;
  // The reply's content, when all is done.
  virtual Elements finish() = 0;
};

using Reply = std::variant<Elements, std::unique_ptr<LongReply>>;

// What operations work on.
struct Service {
  Host& host;
  const Modules& modules;
  Datastores& datastores;
  Clients& clients;
  const AgentCounters& counters;
  std::chrono::system_clock::time_point start;
};

// One request of an operation.
struct Call {
  Service& service;
  Client& client;
  const xmlNode* element;
  // For the log: what was meant by it, and remarks.
  std::string target{};
  std::vector<std::string> notes{};
};

struct OperationRow {
  std::string_view name_space;
  std::string_view name;
  // Throws OperationError or InputError; then nothing has happened.
  Reply (*run)(Call& call);
  bool changes = false;  // something that those who may only read must not
};

// Null for an operation that there is none of.
const OperationRow* find_operation(std::string_view name_space, std::string_view name);

inline constexpr const char* kDone = "<ok/>";

// The functions, by what they are about.
//
// Reads:
Reply get(Call& call);
Reply get_config(Call& call);
Reply get_schema(Call& call);
// Edits:
Reply edit_config(Call& call);
Reply copy_config(Call& call);
Reply validate(Call& call);
Reply preview(Call& call);
// Datastores:
Reply lock(Call& call);
Reply unlock(Call& call);
Reply commit(Call& call);
Reply cancel_commit(Call& call);
Reply discard_changes(Call& call);
// Sessions:
Reply close_session(Call& call);
Reply kill_session(Call& call);
Reply create_subscription(Call& call);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_OPERATIONS_H_
