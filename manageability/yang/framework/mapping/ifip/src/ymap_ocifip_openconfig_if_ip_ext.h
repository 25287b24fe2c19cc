// The callbacks of openconfig-if-ip-ext in the direction from OpenConfig to the native models.
#ifndef YMAP_OCIFIP_OPENCONFIG_IF_IP_EXT_H_
#define YMAP_OCIFIP_OPENCONFIG_IF_IP_EXT_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip_ext.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

#endif  // YMAP_OCIFIP_OPENCONFIG_IF_IP_EXT_H_
