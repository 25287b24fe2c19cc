// Where the plug-in and the models stand, as seen from the running program.
#ifndef OCIFIP_TOOL_LAYOUT_H_
#define OCIFIP_TOOL_LAYOUT_H_

#include <string>

namespace ocifip::tool {

// The plug-in and the models' folder that belong to the running program: an installation and a
// build folder are laid out alike.
std::string default_plugin();
std::string default_models();

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_LAYOUT_H_
