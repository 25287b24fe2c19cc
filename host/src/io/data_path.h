// Paths of nodes in the data, for people and for programs.
#ifndef OCIFIP_HOST_IO_DATA_PATH_H_
#define OCIFIP_HOST_IO_DATA_PATH_H_

#include <string>
#include <string_view>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/configuration.h"

namespace ocifip {

// Instance path of a node given the nodes from the top down to it, as
// "/interfaces/interface[name='Eth1']/subinterfaces".
std::string instance_path(const std::vector<const DocumentNode*>& nodes);

// The same with the modules.
DataPath data_path(const std::vector<const DocumentNode*>& nodes);

// An instance path as instance_path() writes it, with the modules: as far as the models know its
// nodes. Nothing when it may be that of another, since values are shown in short.
DataPath data_path(const Models& models, std::string_view instance_path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DATA_PATH_H_
