// What a callback costs that does nothing, and the loading of the plug-in.
#include <dlfcn.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "log/log.h"
#include "mapping/plugin.h"
#include "measure.h"
#include "yfw/mapping.h"

namespace ocifip::bench {
namespace {

constexpr std::size_t kCalls = 1000000;
// A leaf that is passed over. It asks the framework whether its two lines are wanted.
constexpr const char* kIdleLeaf =
    "ymap_xo_ocifip_halvaneombrixipv4iooper_leaf_lvla_ipv4network_detail_routetag";

// What it asks, and no more.
cerrno ask_framework(yfw_map_ctx* ctx, const nidl_yfw_datatree* /*in*/,
                     nidl_yfw_datatree* /*out*/) {
  const int start = yfw_debug_should_log(ctx->debug_filter, YFW_LOG_TRACE);
  const int end = yfw_debug_should_log(ctx->debug_filter, YFW_LOG_TRACE);
  return start == 0 && end == 0 ? 0 : 1;
}

// Seconds that one of many calls takes.
double seconds_of_call(yfw_map_leaf_callback callback) {
  yfw_map_ctx ctx{};
  nidl_yfw_datatree in{};
  in.tag = "route-tag";
  in.value = "1";
  nidl_yfw_datatree out{};
  yfw_map_leaf_callback volatile entry = callback;  // entered by an address that is read
  const auto call_often = [&] {
    cerrno sum = 0;
    for (std::size_t i = 0; i < kCalls; ++i) {
      sum += entry(&ctx, &in, &out);
    }
    return sum;
  };
  return seconds_of(1, call_often) / static_cast<double>(kCalls);
}

}  // namespace

void measure_idle_callback() {
  void* library = dlopen(OCIFIP_PLUGIN, RTLD_NOW);  // stays
  const auto callback = library == nullptr
                            ? nullptr
                            : reinterpret_cast<yfw_map_leaf_callback>(dlsym(library, kIdleLeaf));
  if (callback == nullptr) {
    throw std::runtime_error(std::string("the plug-in has no ") + kIdleLeaf);
  }
  measure(1, "plugin", [callback] { return seconds_of_call(callback); });
  measure(1, "floor", [] { return seconds_of_call(ask_framework); });
}

// From nothing to a plug-in that has filled its registration records and registered its database
// records, as the host does it.
void measure_load() {
  measure(1, "plugin", [] {
    if (dlopen(OCIFIP_PLUGIN, RTLD_NOW | RTLD_NOLOAD) != nullptr) {
      throw std::runtime_error("the plug-in is loaded already");
    }
    return seconds_of(1, [] { return std::make_unique<Plugin>(OCIFIP_PLUGIN); });
  });
}

}  // namespace ocifip::bench
