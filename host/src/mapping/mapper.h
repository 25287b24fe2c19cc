// The request cycles: a client's document through the mapping to what the device is told or asked.
#ifndef OCIFIP_HOST_MAPPING_MAPPER_H_
#define OCIFIP_HOST_MAPPING_MAPPER_H_

#include <string>
#include <unordered_map>

#include "device/device_directory.h"
#include "io/models.h"
#include "mapping/query_expansion.h"
#include "mapping/read_back.h"
#include "ocifip/host.h"
#include "request/request.h"
#include "tree/path_cache.h"

namespace ocifip {

class Mapper {
 public:
  Mapper(const Models& models, const DeviceDirectory& device, const AugmentEntries& entries,
         bool trace);

  // All throw InputError.
  Outcome edit(const EditRequest& request, Format format);
  Outcome query(const QueryRequest& request, Format format);
  Outcome report(const ReportRequest& request, const ReadBackEntries& entries, Format format);

 private:
  [[nodiscard]] Document read_edit(const EditRequest& request) const;
  Document read_query(const QueryRequest& request, std::vector<std::string>& notes);
  bool is_refused(QueryExpansion::SchemaPath path);
  // The outcome of a request that was mapped; `nothing` is the remark on one without output.
  Outcome finish(Request& request, cerrno result, Format format, const char* nothing) const;

  const Models& models_;
  const DeviceDirectory& device_;
  bool trace_;
  PathCache paths_;
  Framework framework_;
  std::unordered_map<const lysc_node*, bool> refused_;  // leaves, as far as they were probed
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_MAPPER_H_
