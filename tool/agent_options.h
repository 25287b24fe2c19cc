// The command lines of the agent and of what its transport runs.
#ifndef OCIFIP_TOOL_AGENT_OPTIONS_H_
#define OCIFIP_TOOL_AGENT_OPTIONS_H_

#include "options.h"

namespace CLI {
class App;
}

namespace ocifip::tool {

// Both outlive the parsing of the command line.
void add_serve(CLI::App& program, CommandLine& line, ServeCommand& serve);
void add_netconf(CLI::App& program, CommandLine& line, NetconfCommand& netconf);

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_AGENT_OPTIONS_H_
