// The table and the walkers of openconfig-interfaces.

#include "ymap_namespaces.h"
#include "ymap_ocifip_openconfig_interfaces.h"

#define YMAP_MODEL_NAMESPACE kNamespaceInterfaces
#define YMAP_MODEL_DIRECTION Direction::kToNative
#include "ymap_model_walkers.inc"
