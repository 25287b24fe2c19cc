// Finding out what native data becomes when it is read back.
#ifndef OCIFIP_HOST_MAPPING_READ_BACK_PROBE_H_
#define OCIFIP_HOST_MAPPING_READ_BACK_PROBE_H_

#include <vector>

#include "mapping/probe.h"
#include "mapping/read_back.h"

namespace ocifip {

class ReadBackProbe {
 public:
  ReadBackProbe(const Framework& framework, const ReadBackEntries& entries, Probes& probes)
      : framework_(framework), entries_(entries), probes_(probes) {}

  // What is written because of the native leaf at the end of a path, for each value that it is
  // given: because of the leaf alone in its entries or, when that is nothing, among its siblings.
  [[nodiscard]] std::vector<WrittenNode> written_from(SchemaPath native) const;

 private:
  [[nodiscard]] std::vector<WrittenNode> read_back_of(const DocumentNode& top) const;
  [[nodiscard]] DocumentNode surroundings(SchemaPath native, bool siblings) const;
  [[nodiscard]] std::vector<WrittenNode> written_from(SchemaPath native, bool siblings) const;

  const Framework& framework_;
  const ReadBackEntries& entries_;
  Probes& probes_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_BACK_PROBE_H_
