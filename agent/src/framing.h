// The framing of NETCONF messages in a stream of bytes (RFC 6242, sections 4.2 and 4.3).
#ifndef OCIFIP_AGENT_FRAMING_H_
#define OCIFIP_AGENT_FRAMING_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ocifip::agent {

// By a mark behind each message, as all hellos are; or by chunks with their sizes.
enum class Framing : std::uint8_t { kEndMark, kChunks };

// Bytes that are no messages: nothing that follows them can be understood.
class FramingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A message that is longer than it may be.
class TooLong : public FramingError {
 public:
  using FramingError::FramingError;
};

// Finds the messages in what arrives.
class FrameReader {
 public:
  // `limit`: most bytes of a message.
  explicit FrameReader(std::size_t limit) : limit_(limit) {}

  // The framing of what follows the last message that was taken.
  void use(Framing framing) { framing_ = framing; }
  void add(std::string_view bytes) { arrived_ += bytes; }
  // The next message, once all of it has arrived. Throws FramingError.
  std::optional<std::string> next();
  // Whether a message has begun and not ended.
  [[nodiscard]] bool is_within_message() const;

 private:
  // What is expected next within chunks.
  enum class Expected : std::uint8_t {
    kLineFeed,
    kHash,
    kSizeOrEnd,
    kSize,
    kContent,
    kLastLineFeed
  };

  std::optional<std::string> next_marked();
  std::optional<std::string> next_chunked();
  bool read_header(char c);
  void read_content();
  void drop_read();
  [[noreturn]] void fail_as_too_long() const;

  std::size_t limit_;
  Framing framing_ = Framing::kEndMark;
  std::string arrived_;
  std::size_t at_ = 0;        // what is before has been read
  std::size_t searched_ = 0;  // no mark begins before

  std::string message_;  // the content of the chunks so far
  Expected expected_ = Expected::kLineFeed;
  std::uint64_t size_ = 0;  // of the chunk, or what is missing of it
};

// A message as it is sent.
std::string framed(std::string message, Framing framing);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_FRAMING_H_
