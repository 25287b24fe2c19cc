// What comes of requests.
#ifndef OCIFIP_OUTCOME_H_
#define OCIFIP_OUTCOME_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ocifip {

// Why the mapping refused a request, or the device the native edit that came of it.
struct Refusal {
  std::uint32_t code = 0;
  std::string tag;            // of the refused node, else of the innermost one being walked; or ""
  std::string path;           // instance path of the node, or of the nodes being walked
  std::string message;        // the mapping's own sentence, the code's text, or libyang's reason
  std::string hint{};         // the host's sentence beside it, without a full stop; "" for none
  std::string missing_key{};  // that an entry is refused for; "" for none

  // `"enabled" at /interfaces/... : MESSAGE (0xaaf2ee00 unsupported)` in one line, with the hint
  // behind the message, or before that of a failed copy of a text. Without a tag the path comes
  // first, without a path the message.
  [[nodiscard]] std::string text() const;
  // Its parts: the message with the hint, "0xaaf2ee00" and "unsupported".
  [[nodiscard]] std::string sentence() const;
  [[nodiscard]] std::string code_text() const;
  [[nodiscard]] std::string code_name() const;
};

struct Outcome {
  std::string text;                // what was asked for, in the format asked for
  std::optional<Refusal> refusal;  // set: text is empty, but for Format::kCalls
  std::vector<std::string> notes;  // remarks for the user, a sentence each
};

}  // namespace ocifip

#endif  // OCIFIP_OUTCOME_H_
