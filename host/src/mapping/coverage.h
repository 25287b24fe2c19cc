// What the mapping does with each leaf, found by asking it.
#ifndef OCIFIP_HOST_MAPPING_COVERAGE_H_
#define OCIFIP_HOST_MAPPING_COVERAGE_H_

#include "io/models.h"
#include "mapping/plugin.h"
#include "ocifip/host.h"
#include "request/request.h"

namespace ocifip {

// Has a plug-in map edits and reads of every leaf by itself, on devices made up for it, and every
// native leaf that it reads back; `written`, when given, is shown all that it writes and asks for.
Coverage find_coverage(const Models& models, const PluginEntries& plugin,
                       const WriteObserver& written = {});

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_COVERAGE_H_
