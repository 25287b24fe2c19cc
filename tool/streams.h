// Standard streams and files, with errors that name what could not be read or written.
#ifndef OCIFIP_TOOL_STREAMS_H_
#define OCIFIP_TOOL_STREAMS_H_

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "ocifip/host.h"

namespace ocifip::tool {

// Output that cannot be written: "standard output: No space left on device".
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Sees to it that a standard stream that was closed by the caller stays unusable, instead of
// becoming the next file that the process opens.
void guard_standard_streams();

// Reads a whole document from a file, or from standard input for "-". Without an encoding the first
// character that is not blank tells it: '<' begins XML. Throws InputError.
Source read_source(const std::string& file, std::optional<Encoding> encoding);

// Reads the body of an instance path: the argument itself when it is JSON or XML, else as above. It
// is itself when it begins with { [ < or ", or is a number, true, false or null. Throws InputError.
Source read_body(const std::string& path, const std::string& argument,
                 std::optional<Encoding> encoding);

// Writes a text to standard output, all of it or with an error. Throws OutputError.
void write_output(std::string_view text);

// The same for what is going to be saved: the error says that it is not. A closed pipe becomes an
// error, too.
void write_before_saving(std::string_view text);

// Writes a line to standard error.
void write_error(std::string_view line);

// A word as it is written to standard error: red or yellow on a terminal, unless NO_COLOR is set.
enum class Color { kRed, kYellow };
std::string colored(std::string_view word, Color color);

// The same for a message of the program itself, headed by its name.
void complain(std::string_view message);

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_STREAMS_H_
