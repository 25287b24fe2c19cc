// The callbacks of openconfig-if-ip in the direction from OpenConfig to the native models.
#ifndef YMAP_OCIFIP_OPENCONFIG_IF_IP_H_
#define YMAP_OCIFIP_OPENCONFIG_IF_IP_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_openconfig_if_ip.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// The entry of a subinterface's `ipv4`, which registration records name.
YMAP_EXPORT cerrno ymap_ox_ocifip_openconfigifip_augment_lvla_subinterface(
    yfw_map_ctx* ctx, const nidl_yfw_datatree* in, nidl_yfw_datatree* out);

#endif  // YMAP_OCIFIP_OPENCONFIG_IF_IP_H_
