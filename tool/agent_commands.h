// The agent, and what connects a client to it.
#ifndef OCIFIP_TOOL_AGENT_COMMANDS_H_
#define OCIFIP_TOOL_AGENT_COMMANDS_H_

#include "options.h"

namespace ocifip::tool {

// Serves until SIGTERM or SIGINT comes. Throws AgentError, InputError or LoadError.
void serve(const CommandLine& line, const ServeCommand& command);

// Copies bytes between standard input and output and the agent. Throws AgentError.
void connect(const NetconfCommand& command);

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_AGENT_COMMANDS_H_
