// Completion of the command line by shells.
#ifndef OCIFIP_TOOL_COMPLETION_H_
#define OCIFIP_TOOL_COMPLETION_H_

#include <CLI/CLI.hpp>
#include <string>

namespace ocifip::tool {

// A script for bash that completes a program's commands, their options, and the words and files
// that these take. What an option takes is told by its type: "a|b" is one of these words, "DIR" a
// folder, and anything else a file.
std::string bash_completion(const CLI::App& program);

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_COMPLETION_H_
