#include "streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "ocifip/messages.h"

namespace ocifip::tool {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The system's reason for the last failure, behind the name of what failed.
std::string failure(std::string_view name) {
  const auto reason = std::generic_category().message(errno);
  return in_short(name) + ": " + reason;
}

// A file descriptor that is read from, closed at the end unless it is standard input.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ > STDIN_FILENO) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

std::string read_all(const Descriptor& input, const std::string& name) {
  std::string text;
  std::array<char, 1U << 16U> block{};
  while (true) {
    const ssize_t count = read(input.number(), block.data(), block.size());
    if (count == 0) return text;
    if (count > 0) {
      text.append(block.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      throw InputError(failure(name));
    }
  }
}

Encoding encoding_of(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const auto first = text.find_first_not_of(kBlanks);
  return first != std::string_view::npos && text[first] == '<' ? Encoding::kXml : Encoding::kJson;
}

// Whether an argument is JSON or XML rather than the name of a file.
bool is_inline(std::string_view argument) {
  argument.remove_prefix(std::min(argument.find_first_not_of(kBlanks), argument.size()));
  if (argument.empty()) return false;
  if (std::string_view("{[<\"").find(argument[0]) != std::string_view::npos) return true;
  const bool is_word = argument == "true" || argument == "false" || argument == "null";
  const bool has_digit = argument.find_first_of("0123456789") != std::string_view::npos;
  return is_word ||
         (has_digit && argument.find_first_not_of("+-.0123456789eE") == std::string_view::npos);
}

}  // namespace

void guard_standard_streams() {
  // Opened the wrong way round: reading from the one and writing to the others goes on failing.
  constexpr std::array modes = {O_WRONLY, O_RDONLY, O_RDONLY};
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    const bool is_closed = fcntl(stream, F_GETFD) < 0 && errno == EBADF;
    // The lowest free number is taken, which is the stream's own.
    if (is_closed) open("/dev/null", modes.at(static_cast<std::size_t>(stream)));
  }
}

Source read_source(const std::string& file, std::optional<Encoding> encoding) {
  const bool is_standard_input = file == "-";
  Source source;
  source.name = is_standard_input ? "standard input" : file;
  const Descriptor input(is_standard_input ? STDIN_FILENO
                                           : open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (input.number() < 0) throw InputError(failure(source.name));
  source.text = read_all(input, source.name);
  source.encoding = encoding.value_or(encoding_of(source.text));
  return source;
}

Source read_body(const std::string& path, const std::string& argument,
                 std::optional<Encoding> encoding) {
  if (is_inline(argument)) return {"body of " + path, argument, encoding_of(argument)};
  const bool is_file = argument == "-" || access(argument.c_str(), F_OK) == 0 || errno != ENOENT;
  if (!is_file) {
    throw InputError(failure(argument) + "; a text is a JSON value in quotes: '\"TEXT\"'");
  }
  return read_source(argument, encoding);
}

void write_output(std::string_view text) {
  const bool is_written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!is_written || std::fflush(stdout) != 0) throw OutputError(failure("standard output"));
}

void write_before_saving(std::string_view text) {
  // Killed by a closed pipe, the program would leave a file behind and say nothing.
  std::signal(SIGPIPE, SIG_IGN);
  try {
    write_output(text);
  } catch (const OutputError& error) {
    throw OutputError(std::string(error.what()) + "; the device file stays as it is");
  }
}

void write_error(std::string_view line) {
  // Nobody can be told when standard error itself fails.
  std::fputs((std::string(line) + "\n").c_str(), stderr);
}

std::string colored(std::string_view word, Color color) {
  const char* refused = std::getenv("NO_COLOR");
  const bool is_wanted = refused == nullptr || *refused == '\0';
  if (!is_wanted || isatty(STDERR_FILENO) == 0) return std::string(word);
  return (color == Color::kRed ? "\x1b[31m" : "\x1b[33m") + std::string(word) + "\x1b[0m";
}

void complain(std::string_view message) { write_error("ocifip: " + std::string(message)); }

}  // namespace ocifip::tool
