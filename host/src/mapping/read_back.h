// The way of native data through the plug-in: which callback takes what, and in which order.
#ifndef OCIFIP_HOST_MAPPING_READ_BACK_H_
#define OCIFIP_HOST_MAPPING_READ_BACK_H_

#include <string>
#include <string_view>
#include <vector>

#include "request/request.h"
#include "yfw/context.h"

namespace ocifip {

// A native tree, by its top node, and the callback that takes it as a whole.
struct NativeTree {
  std::string module_namespace;
  std::string tag;
  yfw_map_leaf_callback enter = nullptr;
};

// The callbacks of the plug-in that native data is handed to.
struct ReadBackEntries {
  // Those of the private summaries. They come first: of an address, they know less than the rest.
  std::vector<NativeTree> summaries{};
  // Each takes one interface-configuration entry, in this order: the walker of the list, then those
  // of the models that augment it.
  std::vector<yfw_map_leaf_callback> interface_configuration{};
  std::vector<NativeTree> trees{};

  // Whether a top-level node is mapped: interface-configurations, or the top of a summary or tree.
  [[nodiscard]] bool take(std::string_view module_namespace, std::string_view tag) const;
};

// Maps the request's input, native data, until a callback fails: the summaries, the interface
// configurations, then the other trees in their order. Returns the first result that is not 0.
cerrno read_back(Request& request, const ReadBackEntries& entries);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_BACK_H_
