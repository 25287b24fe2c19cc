#include "path_element.h"

#include <algorithm>

#include "xml.h"

namespace ocifip::agent {

std::string path_element(std::string_view name, const DataPath& path,
                         const std::vector<Module>& modules) {
  std::string text = "<" + std::string(name);
  for (const std::string& prefix : path.modules) {
    const auto module = std::find_if(modules.begin(), modules.end(),
                                     [&](const Module& each) { return each.name == prefix; });
    if (module == modules.end()) continue;
    text += " xmlns:" + prefix + "=\"" + escaped(module->name_space) + "\"";
  }
  return text + ">" + escaped(path.text) + "</" + std::string(name) + ">";
}

}  // namespace ocifip::agent
