// Places as their users read them.
#ifndef OCIFIP_HOST_TREE_PLACE_PATHS_H_
#define OCIFIP_HOST_TREE_PLACE_PATHS_H_

#include <set>
#include <string>
#include <vector>

#include "tree/path_cache.h"

namespace ocifip {

// "/MODULE:a/b/OTHER:c": the module of each node that is not in that of the one above. A namespace
// that no model has stands for its module.
std::string qualified_path(const Place* place);

// The paths of places in schema order, without those that only lead to another of them.
std::vector<std::string> qualified_paths(const std::set<const Place*>& places);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_PLACE_PATHS_H_
