// Work that is done in parts.
#ifndef OCIFIP_AGENT_STEP_H_
#define OCIFIP_AGENT_STEP_H_

#include <cstdint>

namespace ocifip::agent {

// What comes behind a part of some work: nothing, another part, or one for which there is something
// to be waited for.
enum class Step : std::uint8_t { kDone, kMore, kWaiting };

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_STEP_H_
