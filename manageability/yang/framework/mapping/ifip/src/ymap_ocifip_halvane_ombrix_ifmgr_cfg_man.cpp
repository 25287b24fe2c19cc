// The OpenConfig subinterface of a native interface.

#include "ymap_ocifip_halvane_ombrix_ifmgr_cfg.h"
#include "ymap_read_back.h"

using namespace ymap;  // NOLINT(google-build-using-namespace): the callbacks are the file's subject

YMAP_LEAF(ymap_xo_ocifip_halvaneombrixifmgrcfg_subinterface_index) {
  const OpenConfigKeys keys = split_interface_name(current_interface_name(call.ctx));
  Node* interface = nullptr;
  if (const cerrno result = find_interface(call, keys.interface.data(), interface);
      result != YMAP_OK) {
    return result;
  }
  return select_subinterface(call, interface, keys.index.data());
}
