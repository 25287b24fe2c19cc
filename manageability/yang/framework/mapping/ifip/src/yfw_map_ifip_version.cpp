// What the plug-in tells of itself before anything else of it is called.
#include "yfw/version.h"
#include "ymap_frame.h"

YMAP_EXPORT std::uint32_t yfw_map_contract_version(void) { return YFW_CONTRACT_VERSION; }

YMAP_EXPORT const char* yfw_map_plugin_version(void) { return OCIFIP_VERSION; }
