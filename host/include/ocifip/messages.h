// How messages repeat what users gave: file names, paths, values.
#ifndef OCIFIP_MESSAGES_H_
#define OCIFIP_MESSAGES_H_

#include <string>
#include <string_view>

namespace ocifip {

// In double quotes, escaped as a JSON string, and cut after 200 characters, which "..." tells.
std::string in_quotes(std::string_view text);

// The same without quotes, and of the escapes those of control characters alone.
std::string in_short(std::string_view text);

}  // namespace ocifip

#endif  // OCIFIP_MESSAGES_H_
