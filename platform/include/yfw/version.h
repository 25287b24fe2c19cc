/*
 * The version of this contract, by which a framework finds out whether a plug-in fits before it
 * calls anything else of it.
 *
 * The major number changes when a plug-in or a framework that was built before would go wrong: a
 * function, a structure, a constant or the meaning of one has changed or is gone. The minor number
 * changes when something is added that a plug-in may use, and starts at 0 with each major number.
 * Comments that only tell more change neither.
 */
#ifndef YFW_VERSION_H
#define YFW_VERSION_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define YFW_CONTRACT_VERSION_MAJOR 1u
#define YFW_CONTRACT_VERSION_MINOR 1u

/* Both numbers in one. */
#define YFW_CONTRACT_VERSION (YFW_CONTRACT_VERSION_MAJOR * 1000u + YFW_CONTRACT_VERSION_MINOR)

/* Whether a framework that offers one version may load a plug-in that was built for another: of the
 * same major number, with nothing in it that the framework does not know yet. */
#define YFW_CONTRACT_FITS(offered, built_for) \
  ((offered) / 1000u == (built_for) / 1000u && (built_for) <= (offered))

/*
 * Exported by every mapping plug-in under these names, and looked up in the plug-in's own library.
 * They may be called at any time.
 */

/* YFW_CONTRACT_VERSION as it was when the plug-in was built. */
uint32_t yfw_map_contract_version(void);

/* The plug-in's own version, "0.1.0"; a text of the plug-in's that lasts until it is unloaded. */
const char *yfw_map_plugin_version(void);

#ifdef __cplusplus
}
#endif

#endif
