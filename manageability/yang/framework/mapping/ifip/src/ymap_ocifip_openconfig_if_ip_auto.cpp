// The generated callbacks of openconfig-if-ip.

#include "ymap_ocifip_openconfig_if_ip.h"
#include "ymap_request.h"

#define YMAP_DUCK_LEAF ymap::refuse_leaf
#include "ymap_model_leaves.inc"
