#include "agent_commands.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <sstream>

#include "streams.h"

namespace ocifip::tool {
namespace {

std::atomic<Agent*> stopped_by_signals = nullptr;

void stop(int /*signal*/) {
  if (Agent* agent = stopped_by_signals) agent->stop();
}

// The names in a file, a name a line; empty lines and those that begin with # say nothing.
std::set<std::string> read_users(const std::string& file) {
  std::istringstream lines(read_source(file, Encoding::kJson).text);
  std::set<std::string> users;
  for (std::string line; std::getline(lines, line);) {
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos || line[first] == '#') continue;
    users.insert(line.substr(first, line.find_last_not_of(" \t\r") + 1 - first));
  }
  return users;
}

}  // namespace

void serve(const CommandLine& line, const ServeCommand& command) {
  AgentOptions options = command.agent;
  if (command.read_only_users) options.read_only_users = read_users(*command.read_only_users);
  Host host(line.host);
  host.check_device();
  Agent agent(host, options, [](const std::string& text) { write_error(text); });
  stopped_by_signals = &agent;
  std::signal(SIGTERM, stop);
  std::signal(SIGINT, stop);
  std::signal(SIGPIPE, SIG_IGN);
  agent.run();
  stopped_by_signals = nullptr;
}

void connect(const NetconfCommand& command) { relay(command.socket, STDIN_FILENO, STDOUT_FILENO); }

}  // namespace ocifip::tool
