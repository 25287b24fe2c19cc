// The generated callbacks of openconfig-interfaces.

#include "ymap_ocifip_openconfig_interfaces.h"
#include "ymap_request.h"

#define YMAP_DUCK_LEAF ymap::refuse_leaf
#include "ymap_model_leaves.inc"
