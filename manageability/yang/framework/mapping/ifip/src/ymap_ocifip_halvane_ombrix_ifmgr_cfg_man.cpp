// The OpenConfig subinterface of a native interface.

#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"
#include "ymap_read_back.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index) {
  const OpenConfigKeys keys = split_interface_name(current_interface_name(call.ctx));
  EntryCursor cursor(call);
  const cerrno result = cursor.find(kInterfaces, keys.interface.data());
  return result != YMAP_OK
             ? result
             : cursor.find_or_add(kSubinterfaces, keys.index.data(), current_slot(call));
}
