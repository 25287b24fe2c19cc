// The callbacks of Halvane-Ombrix-ifmgr-cfg in the direction from the native models to OpenConfig.
#ifndef YMAP_OCIFIP_HALVANE_OMBRIX_IFMGR_CFG_H_
#define YMAP_OCIFIP_HALVANE_OMBRIX_IFMGR_CFG_H_

#include "ymap_frame.h"
#include "ymap_walker.h"

// clang-format off
#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.inc"
#include "ymap_model_declarations.inc"
#include "ymap_model_end.inc"
// clang-format on

// Finds or makes the OpenConfig subinterface of the native interface being mapped, and makes it
// current. The interface itself must be in the output: it is never made here, by design.
YMAP_DECLARE_LEAF_FORM(ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index)

#endif  // YMAP_OCIFIP_HALVANE_OMBRIX_IFMGR_CFG_H_
