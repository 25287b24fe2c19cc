// YANG modules as texts: what has to be seen, or set right, before libyang reads them.
#ifndef OCIFIP_HOST_IO_YANG_TEXT_H_
#define OCIFIP_HOST_IO_YANG_TEXT_H_

#include <string>
#include <string_view>

namespace ocifip {

// Whether a YANG text is a submodule, which is loaded through its module alone.
bool is_submodule(std::string_view text);

// The text without the anchors of patterns: in YANG a pattern describes the whole of a value, and
// "^" and "$" are characters like others. Published modules have patterns of the POSIX kind, that
// begin and end with these, which no value would match.
std::string without_anchors(std::string text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_YANG_TEXT_H_
