// The recording platform's services that read-backs use, and what it answers them.
#ifndef READ_BACK_PLATFORM_H_
#define READ_BACK_PLATFORM_H_

#include <map>
#include <optional>
#include <string>

#include "native_records.h"
#include "recording_platform.h"

namespace recording {

// What the services here answer. Their calls are recorded among the platform's, as
//   kWrites   trim PREFIX, untrim
//   kSearch   search output|BASE LIST KEY="VALUE" MODULE
//   kDevice   the database and the codec
struct ReadBack {
  std::map<std::string, std::string> leaves;  // of the entries being walked, by "LIST LEAF"
  std::map<std::string, Node*> entries;       // of the output, by "LIST VALUE"; others are absent
  std::optional<ipv4_if_detail> detail;       // the only item of the database
};

inline constexpr Kind kSearch = static_cast<Kind>(256);

extern ReadBack read_back;

}  // namespace recording

#endif  // READ_BACK_PLATFORM_H_
