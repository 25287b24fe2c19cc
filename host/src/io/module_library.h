// The YANG modules of the models, as others are told of them.
#ifndef OCIFIP_HOST_IO_MODULE_LIBRARY_H_
#define OCIFIP_HOST_IO_MODULE_LIBRARY_H_

#include <optional>
#include <string>
#include <vector>

#include "io/models.h"
#include "ocifip/configuration.h"

namespace ocifip {

// As Host has them.
std::vector<Module> module_list(const Models& models);
std::optional<std::string> module_text(const Models& models, const std::string& name,
                                       const std::string& revision);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_MODULE_LIBRARY_H_
