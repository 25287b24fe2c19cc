// Stands between a loaded plug-in and its platform, and makes calls of the platform fail.
#ifndef FAULT_LAYER_H_
#define FAULT_LAYER_H_

#include <cstdint>
#include <functional>
#include <string>

#include "redirected_calls.h"
#include "yfw/cerrno.h"
#include "yfw/datatree.h"

namespace ocifip::faults {

// The failure of services that return a code: no service's own.
inline constexpr cerrno kFault = 0x0fa17000;

// A call of the plug-in's.
struct ServiceCall {
  const char* service = "";
  const nidl_yfw_datatree* node = nullptr;  // the first node among its arguments
  std::function<std::string()> texts;       // its texts, sizes and nodes' tags: "[name][64][tag]"
};

// One at a time.
class FaultLayer {
 public:
  // Turns the references of a plug-in, which stays loaded for as long as the layer lives, from the
  // platform's functions to the layer. Throws std::runtime_error when it is not loaded, and
  // LoadError for a function of the platform of which the layer's table does not say how it fails.
  explicit FaultLayer(const std::string& plugin);
  ~FaultLayer();
  FaultLayer(const FaultLayer&) = delete;
  FaultLayer& operator=(const FaultLayer&) = delete;

  // Is asked at every call that can fail whether this one does.
  std::function<bool(const ServiceCall& call)> fails;

 private:
  RedirectedCalls redirected_;
};

}  // namespace ocifip::faults

#endif  // FAULT_LAYER_H_
