// The command line: what the user asked for.
#ifndef OCIFIP_TOOL_OPTIONS_H_
#define OCIFIP_TOOL_OPTIONS_H_

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ocifip/agent.h"
#include "ocifip/host.h"

namespace ocifip::tool {

// A command line that cannot be understood; the message may have several lines.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Help or the version was asked for.
struct Information {
  std::string text;
};

// `ocifip edit`
struct EditCommand {
  std::optional<std::string> document;  // file, or "-"
  std::vector<std::string> deletes;     // instance paths
  // Instance paths, each with a body: a file, "-", or the body itself.
  std::vector<std::pair<std::string, std::string>> bodies;
  std::optional<DefaultOperation> operation;
};

// `ocifip apply`
struct ApplyCommand {
  EditCommand edit;
  bool save = false;  // the device file
};

// `ocifip query` and `ocifip get`: either a document or paths
struct QueryCommand {
  bool is_answered = false;  // `get`
  std::optional<std::string> document;
  std::vector<std::string> paths;
  std::optional<Content> content;
};

// `ocifip report`
struct ReportCommand {
  std::string data;  // file, or "-"
  Content content = Content::kAll;
};

// `ocifip registrations`
struct RegistrationsCommand {};

// `ocifip coverage`
struct CoverageCommand {};

// `ocifip device`
struct DeviceCommand {
  enum class Action { kShowExample, kShowSchema, kCheck };  // that of the host's device file
  Action action = Action::kShowExample;
};

// Where the agent is by default.
inline constexpr const char* kAgentSocket = "/run/ocifip/netconf.sock";

// `ocifip serve`
struct ServeCommand {
  AgentOptions agent = {kAgentSocket};
  std::optional<std::string> read_only_users;  // a file
};

// `ocifip netconf`
struct NetconfCommand {
  std::string socket = kAgentSocket;
};

struct CommandLine {
  HostOptions host;
  Format format = Format::kJson;
  std::optional<Encoding> input;  // encoding of documents; told by their text when absent
  std::variant<Information, EditCommand, ApplyCommand, QueryCommand, ReportCommand,
               RegistrationsCommand, CoverageCommand, DeviceCommand, ServeCommand, NetconfCommand>
      command;
};

// Reads the program's arguments. Throws UsageError.
CommandLine read_command_line(int count, const char* const* arguments);

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_OPTIONS_H_
