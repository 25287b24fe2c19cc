// What the host remembers of its text services.
#ifndef OCIFIP_HOST_TEXT_SERVICES_H_
#define OCIFIP_HOST_TEXT_SERVICES_H_

#include <cstddef>

namespace ocifip {

// Most characters that the destination took into which a text did not fit last, in this thread; 0
// when every text fitted.
std::size_t last_text_limit();

}  // namespace ocifip

#endif  // OCIFIP_HOST_TEXT_SERVICES_H_
