/*
 * What the sibling plug-in, which maps the interface level of openconfig-interfaces, offers to
 * other mapping plug-ins.
 */
#ifndef YFW_INTERFACES_MAPPING_H
#define YFW_INTERFACES_MAPPING_H

#include "im/interface_manager.h"
#include "yfw/context.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The sibling's walker of "interfaces"; it calls the subinterface callbacks of other plug-ins. */
cerrno ymap_ox_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx *ctx,
                                                         const nidl_yfw_datatree *in,
                                                         nidl_yfw_datatree *out);

/* The sibling's interface-manager connection; 0 when it has none. */
extern imc_connid yfw_ocifmgr_im_conn;

#ifdef __cplusplus
}
#endif

#endif
