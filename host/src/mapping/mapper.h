// The request cycles: a client's document through the mapping to what the device is told or asked.
#ifndef OCIFIP_HOST_MAPPING_MAPPER_H_
#define OCIFIP_HOST_MAPPING_MAPPER_H_

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "device/device_directory.h"
#include "device/subinterface_name.h"
#include "io/models.h"
#include "io/read_document.h"
#include "io/select_data.h"
#include "mapping/device_check.h"
#include "mapping/edit_cycle.h"
#include "mapping/edit_input.h"
#include "mapping/input_checks.h"
#include "mapping/plugin.h"
#include "mapping/probe.h"
#include "mapping/query_expansion.h"
#include "mapping/read_groups.h"
#include "mapping/read_input.h"
#include "ocifip/host.h"
#include "request/request.h"
#include "tree/path_cache.h"

namespace ocifip {

// What comes of an edit on a device.
struct EditedDevice {
  Outcome outcome;                // its text are the calls, if these were recorded
  std::vector<Refusal> refusals;  // as many as are known; the first one is the outcome's
  Document native_edit;
  Document difference;                     // of the former configuration and the new one
  std::shared_ptr<const Document> native;  // the new one; null when it is as before, or refused
};

class Mapper {
 public:
  // The first three outlive the mapper. `accepted` is known of the device's configuration.
  Mapper(const Models& models, const DeviceDirectory& device, const PluginEntries& plugin,
         const HostOptions& options, AcceptedPart accepted = {});

  // All throw InputError.
  Outcome edit(const EditRequest& request, Format format);
  // The device stays as it is. The text of the outcome is that of Host::apply().
  EditedDevice apply(const EditRequest& request, Format format);
  // The same of an edit that may have native nodes, too; without a text, but for that of kCalls.
  EditedDevice change(const EditRequest& request, Views views, Format format);
  Outcome query(const QueryRequest& request, Format format);
  Outcome report(const ReportRequest& request, Format format);
  Outcome get(const QueryRequest& request, Format format);

  // A read that is to be answered, checked. Throws InputError.
  ReadInput read(const QueryRequest& request, Views views);
  // What OpenConfig shows of the configuration of subinterfaces; nothing when the mapping refuses.
  Document configuration_of(const std::vector<SubinterfaceName>& names);
  // Whether a reply says more than which interfaces and subinterfaces there are.
  static bool has_content(const Document& reply);

  // What the models have been found to accept of the device's configuration.
  [[nodiscard]] const AcceptedPart& accepted() const { return device_check_.accepted(); }

 private:
  friend class OpenConfigRead;

  // A query as its parts were asked, and what they are together when they are expanded.
  struct Query {
    Document asked;  // with values that choose, if they do
    Document expanded;
    Document families;  // those that are asked for in part, as wholes and expanded
    std::vector<std::string> notes;
    Content content = Content::kAll;
    bool values_choose = false;
  };

  // Take a request as the mapping left it, and the mapping's result.
  using Mapped = std::function<void(Request& request, cerrno result)>;
  MappedEdit map_edit(EditInput& input, Format format, EditCycle::Purpose purpose, EditCycle& cycle,
                      const NativePartTaker& take = {});
  void make_change(EditInput& input, Format format, EditedDevice& edited);
  std::optional<Refusal> find_left(const EditCycle& cycle, const EditedDevice& edited) const;
  ConfigurationReads configuration_reads();
  void map_query(const Query& query, Format format, const Mapped& mapped);
  Query query_of(ReadInput read, const std::vector<std::string>& native_names);
  void begin(const char* stage) const;
  void check_device(const Document& request);
  // What of the device's data a read is answered from, for queries.
  using DeviceData = std::function<Document(const Document& queries, Content content)>;
  // What came of a part of a read.
  struct PartialReply {
    Document selected;
    std::vector<std::string> query_notes;
    std::vector<std::string> reply_notes;
  };
  // `few`: the native names of all interfaces that a query asks for; null when they may be any.
  Outcome answer(const Query& query, Format format, const std::vector<std::string>* few);
  // Nothing when the group cannot be answered by itself.
  std::optional<PartialReply> answer_group(const ReadInput& read, const ReadGroup& group,
                                           DataSelector& native);
  Document reply(const Query& query, Document queries, Format format, const DeviceData& device_data,
                 Outcome& outcome);
  Document native_queries(const Document& expanded, Content content);
  [[nodiscard]] Document device_data(const Document& queries, Content content,
                                     const std::vector<std::string>* few) const;
  [[nodiscard]] Document group_data(const ReadGroup& group, const Document& queries,
                                    Content content, DataSelector& native) const;
  [[nodiscard]] std::vector<SubinterfaceName> concerned(const Document& read) const;
  bool is_refused(SchemaPath path);
  // The outcome of a request that was mapped; `nothing` is the remark on one without output.
  Outcome finish(Request& request, cerrno result, Format format, const char* nothing) const;

  const Models& models_;
  const DeviceDirectory& device_;
  const PluginEntries& plugin_;
  HostOptions options_;
  PathCache paths_;
  Framework framework_;
  Probes probes_;
  DeviceCheck device_check_;
  std::unordered_map<const lysc_node*, bool> refused_;  // leaves, as far as they were probed
  ConfigurationReads reads_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_MAPPER_H_
