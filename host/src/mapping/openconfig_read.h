// A read of OpenConfig, some interfaces after the others.
#ifndef OCIFIP_HOST_MAPPING_OPENCONFIG_READ_H_
#define OCIFIP_HOST_MAPPING_OPENCONFIG_READ_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "io/select_data.h"
#include "mapping/joined_text.h"
#include "mapping/parts_report.h"
#include "mapping/read_groups.h"
#include "mapping/read_input.h"
#include "ocifip/host.h"

namespace ocifip {

class Mapper;

// The remark on a read that is answered with no more than interfaces and subinterfaces.
inline constexpr const char* kNothingFound = "the device has nothing of what is asked for";

// Answers a read of many interfaces for some of them after the other, so that it takes little
// memory: what all of them are asked is many times what the device has. A read is answered as a
// whole when its interfaces are few, and because of what only the whole has in the right order: a
// refusal, remarks on what is asked, and the calls and the trace of the mapping.
class OpenConfigRead {
 public:
  // The mapper outlives the read.
  OpenConfigRead(Mapper& mapper, ReadInput read, Format format);

  // Whether there is more to do. Throws InputError.
  bool step();
  // When there is nothing more to do.
  Outcome finish();

 private:
  bool answer_next();

  Mapper& mapper_;
  ReadInput read_;
  Format format_;
  std::vector<ReadGroup> groups_;                // none when it is answered as a whole
  std::optional<std::vector<std::string>> few_;  // native names, when no others are asked for
  std::size_t next_ = 0;
  std::optional<DataSelector> native_;
  JoinedText text_;
  Remarks of_queries_;
  Remarks of_replies_;
  std::vector<std::string> of_printing_;
  bool is_found_ = false;
  Outcome whole_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_OPENCONFIG_READ_H_
