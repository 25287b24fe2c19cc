// Texts from outside: whether they are fit to be read, and how they are shown in messages.
#ifndef OCIFIP_HOST_IO_TEXT_H_
#define OCIFIP_HOST_IO_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "ocifip/host.h"
#include "ocifip/messages.h"

namespace ocifip {

// "NAME:LINE: reason", or "NAME: reason" for line 0. Control characters of the name are escaped.
// The fault, whose reason is this one, tells programs what is wrong.
InputError input_error(const std::string& name, int line, const std::string& reason,
                       InputFault fault = {});

// "cannot load the KIND NAME: reason", with what users gave as a name cut like every repeated text.
LoadError load_error(const std::string& kind, const std::string& name, const std::string& reason);

// Number of the line that a place in a text is on, counted from 1.
int line_at(std::string_view text, std::size_t at);

// Throws InputError unless a text is UTF-8 without NUL bytes and more than blanks.
void check_text(const std::string& name, std::string_view text);

// Where a text ceases to be UTF-8; its size when it does not.
std::size_t utf8_length(std::string_view text);

// The text with U+FFFD in place of each byte that is not part of a UTF-8 character.
std::string valid_utf8(std::string_view text);

// Whether a text is ASCII that needs no escapes in double quotes.
bool is_plain(std::string_view text);

// Appends a text in double quotes, escaped as a JSON string.
void append_quoted(std::string& out, std::string_view text);

// Somebody else's sentence as one line of a message: valid UTF-8, with control characters escaped,
// and without line feeds at its end. What it repeats, in quotes or as a word, is cut as well.
std::string in_one_line(std::string_view text);

// Whether a text can be the name of a YANG node.
bool is_identifier(std::string_view text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_TEXT_H_
