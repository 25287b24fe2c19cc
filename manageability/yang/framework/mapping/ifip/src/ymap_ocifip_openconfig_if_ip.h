// The callbacks of openconfig-if-ip in the direction from OpenConfig to the native models.
#ifndef YMAP_OCIFIP_OPENCONFIG_IF_IP_H_
#define YMAP_OCIFIP_OPENCONFIG_IF_IP_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

#define YMAP_MODEL openconfig_if_ip
#define YMAP_SYMBOL(rest) ymap_ox_ocifip_openconfigifip_##rest
#define YMAP_ROWS "ymap_ocifip_openconfig_if_ip.def"
#include "ymap_model_declarations.inc"

#endif  // YMAP_OCIFIP_OPENCONFIG_IF_IP_H_
