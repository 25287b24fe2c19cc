#include "mapping/mapper.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "device/native_part.h"
#include "device/summaries.h"
#include "io/deleted_values.h"
#include "io/document_nodes.h"
#include "io/print_document.h"
#include "io/read_document.h"
#include "io/select_data.h"
#include "mapping/edit_input.h"
#include "mapping/envelope_checks.h"
#include "mapping/input_checks.h"
#include "mapping/interface_nodes.h"
#include "mapping/joined_text.h"
#include "mapping/map_input.h"
#include "mapping/openconfig_read.h"
#include "mapping/outcomes.h"
#include "mapping/read_nodes.h"
#include "mapping/subinterfaces.h"
#include "result_codes.h"
#include "tree/output_document.h"

namespace ocifip {
namespace {

std::uint32_t request_op(Content content) {
  return content == Content::kAll ? std::uint32_t{YFW_MAP_REQUEST_READ_STATE}
                                  : std::uint32_t{YFW_MAP_REQUEST_READ_CONFIG};
}

// Completes what is selected of the native data. State is no part of an answer that is to hold
// configuration, also where the mapping asks for it by the way.
template <class Summary>
Document with_summary(Document data, const Document& queries, Content content,
                      const Summary& summary) {
  std::erase_if(data.roots, is_ipv4_summary);
  if (std::any_of(queries.roots.begin(), queries.roots.end(), is_ipv4_summary)) {
    merge_document(data, select_data({"summary", {summary()}}, queries));
  }
  if (content == Content::kConfig) {
    std::erase_if(data.roots, is_state);
  }
  return data;
}

template <class Element>
void append(std::vector<Element>& to, std::vector<Element> from) {
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

bool has_settings(const std::vector<DocumentNode>& nodes) {
  return std::any_of(nodes.begin(), nodes.end(), [](const DocumentNode& node) {
    const bool is_entry = node.kind == NodeKind::kList && node.module != kInterfacesModule;
    const bool is_setting = node.kind >= NodeKind::kLeaf && !is_key(node);
    return is_entry || is_setting || has_settings(node.children);
  });
}

}  // namespace

Mapper::Mapper(const Models& models, const DeviceDirectory& device, const PluginEntries& plugin,
               const HostOptions& options, AcceptedPart accepted)
    : models_(models),
      device_(device),
      plugin_(plugin),
      options_(options),
      paths_(models),
      framework_{models, paths_, plugin.augments, options.progress},
      probes_(models),
      device_check_(models, device, std::move(accepted)),
      reads_(configuration_reads()) {}

bool Mapper::has_content(const Document& reply) { return has_settings(reply.roots); }

void Mapper::check_device(const Document& request) {
  if (!options_.unchecked) {
    device_check_.check(request);
  }
}

void Mapper::begin(const char* stage) const {
  if (framework_.progress != nullptr) {
    framework_.progress->begin(stage);
  }
}

// Maps what is OpenConfig of an edit.
MappedEdit Mapper::map_edit(EditInput& input, Format format, EditCycle::Purpose purpose,
                            EditCycle& cycle, const NativePartTaker& take) {
  MappedEdit mapped =
      cycle.map(std::move(input.openconfig), input.operation, purpose,
                {.record_calls = format == Format::kCalls, .trace = options_.trace}, take);
  if (!mapped.outcome.refusal) {
    mapped.outcome.notes.insert(mapped.outcome.notes.begin(), input.notes.begin(),
                                input.notes.end());
  }
  return mapped;
}

Outcome Mapper::edit(const EditRequest& request, Format format) {
  const ActiveDevice active(device_);
  EditCycle cycle(framework_, plugin_, device_, reads_);
  // The first part of an edit that asks is nearly always all of it. For each of many, what those
  // before asked for would be read again.
  bool is_first = true;
  DeletedValues deleted([&](const Document& part) -> const std::vector<DocumentNode>& {
    const NativeConfiguration& native = device_.device().native;
    const bool is_part = std::exchange(is_first, false);
    return (is_part ? part_asked(models_, native, part) : native.whole()).roots;
  });
  JoinedText text(format);
  std::vector<std::string> of_printing;
  const NativePartTaker print = [&](Document& part) {
    if (format != Format::kTree) deleted.give(part);
    text.add(part, of_printing);
  };
  // Of XML, the top element tells whether there are operations anywhere below it.
  const bool is_joined = format == Format::kJson || format == Format::kTree;
  EditInput input = read_edit(models_, request, InputRules(options_), Views::kOpenConfig);
  check_device(input.openconfig);
  MappedEdit edit = map_edit(
      input, format,
      format == Format::kCalls ? EditCycle::Purpose::kCalls : EditCycle::Purpose::kNativeEdit,
      cycle, is_joined ? print : NativePartTaker());
  Outcome outcome = std::move(edit.outcome);
  if (outcome.refusal) {
    return outcome;
  }
  if (!edit.has_effect) {
    outcome.notes.emplace_back("the request maps to nothing on the device");
  }
  if (edit.is_in_parts) {
    outcome.text = text.finish();
    append(outcome.notes, std::move(of_printing));
  } else if (format != Format::kCalls) {
    begin("printing");
    if (format != Format::kTree) deleted.give(edit.native);
    outcome.text = print_document(edit.native, format, outcome.notes);
  }
  return outcome;
}

// What reads ask of the native data that the host makes on its own account, which are neither
// recorded nor traced.
Document Mapper::native_queries(const Document& expanded, Content content) {
  Document ordered = expanded;
  put_whole_lists_first(ordered.roots);
  const InputTree input(ordered, Operation::kWrite);
  Request run(framework_, input, {.request_op = request_op(content), .is_query = true});
  const Outcome outcome = outcome_of(run, map_input(run, plugin_.openconfig));
  if (outcome.refusal) {
    throw ReadRefused{*outcome.refusal};
  }
  return to_document(run.output(), "queries");
}

ConfigurationReads Mapper::configuration_reads() {
  const auto expand = [this](Document& read) {
    std::vector<std::string> unread;
    QueryExpansion expansion(models_, Content::kConfig, device_.interface_names(),
                             [this](SchemaPath path) { return is_refused(path); });
    expansion.expand(read, unread);
    return std::any_of(read.roots.begin(), read.roots.end(), asks_for_a_leaf);
  };
  const auto queries = [this](const Document& expanded) {
    return native_queries(expanded, Content::kConfig);
  };
  const auto answer = [this, queries](const Document& expanded) {
    const Document data = device_data(queries(expanded), Content::kConfig, nullptr);
    const InputTree input(data, Operation::kWrite);
    Request run(framework_, input, {.request_op = request_op(Content::kConfig)});
    enter_subinterfaces(run, concerned(expanded));
    const Outcome outcome = outcome_of(run, read_back(run, plugin_.read_back));
    if (outcome.refusal) {
      throw ReadRefused{*outcome.refusal};
    }
    return to_document(run.output(), "answer");
  };
  return {expand, queries, answer};
}

Document Mapper::configuration_of(const std::vector<SubinterfaceName>& names) {
  const ActiveDevice active(device_);
  std::vector<Document> reads;
  for (const SubinterfaceName& name : names) {
    Document& read =
        reads.emplace_back(read_path(models_,
                                     "/openconfig-interfaces:interfaces/interface[name='']/"
                                     "subinterfaces/subinterface[index='']"));
    DocumentNode& interface = read.roots.front().children.front();
    interface.children.front().value = name.interface;
    interface.children.back().children.front().children.front().value = name.index;
  }
  Document read = merged(std::move(reads));
  try {
    return reads_.expand(read) ? reads_.answer(read) : Document();
  } catch (const ReadRefused&) {
    return {};
  }
}

void Mapper::map_query(const Query& query, Format format, const Mapped& mapped) {
  const InputTree input(query.expanded, Operation::kWrite);
  Request run(framework_, input,
              {.request_op = request_op(query.content),
               .is_query = true,
               .record_calls = format == Format::kCalls,
               .trace = options_.trace});
  for (const std::string& note : query.notes) {
    run.note(note);
  }
  mapped(run, map_input(run, plugin_.openconfig));
}

ReadInput Mapper::read(const QueryRequest& request, Views views) {
  ReadInput read = read_query(models_, request, InputRules(options_), views);
  check_device(joined(read.openconfig.asked));
  if (!read.native.asked.empty()) check_device(joined(read.native.asked));
  return read;
}

Outcome Mapper::query(const QueryRequest& request, Format format) {
  const ActiveDevice active(device_);
  Outcome outcome;
  map_query(query_of(read(request, Views::kOpenConfig), device_.interface_names()), format,
            [&](Request& run, cerrno result) {
              outcome = finish(run, result, format, "the request asks the device for nothing");
            });
  return outcome;
}

Outcome Mapper::get(const QueryRequest& request, Format format) {
  const ActiveDevice active(device_);
  OpenConfigRead answer(*this, read(request, Views::kOpenConfig), format);
  while (answer.step()) {
  }
  return answer.finish();
}

Outcome Mapper::answer(const Query& query, Format format, const std::vector<std::string>* few) {
  Outcome outcome;
  map_query(query, format, [&](Request& run, cerrno result) {
    outcome = outcome_of(run, result);
    if (outcome.refusal) return;
    const auto data = [&](const Document& queries, Content content) {
      return device_data(queries, content, few);
    };
    const Document selected =
        reply(query, to_document(run.output(), "queries"), format, data, outcome);
    if (outcome.refusal) return;
    if (!has_content(selected)) {
      outcome.notes.emplace_back(kNothingFound);
    }
    if (format != Format::kCalls) {
      begin("printing");
      outcome.text = print_document(selected, format, outcome.notes);
    }
  });
  return outcome;
}

// Nothing when the group cannot be answered by itself.
std::optional<Mapper::PartialReply> Mapper::answer_group(const ReadInput& read,
                                                         const ReadGroup& group,
                                                         DataSelector& native) {
  ReadInput of_group;
  of_group.values_choose = read.values_choose;
  of_group.notes = read.notes;
  of_group.content = read.content;
  of_group.openconfig = {reads_of(group, read.openconfig.asked),
                         reads_of(group, read.openconfig.chosen)};
  const Query query = query_of(std::move(of_group), group.native_names);
  if (query.notes.size() != read.notes.size()) return std::nullopt;
  std::optional<PartialReply> partial;
  map_query(query, Format::kTree, [&](Request& run, cerrno result) {
    Outcome outcome = outcome_of(run, result);
    if (outcome.refusal) return;
    PartialReply part;
    part.query_notes = std::exchange(outcome.notes, {});
    const auto data = [&](const Document& queries, Content content) {
      return group_data(group, queries, content, native);
    };
    part.selected =
        reply(query, to_document(run.output(), "queries"), Format::kTree, data, outcome);
    if (outcome.refusal || !is_of_group(part.selected, group)) return;
    part.reply_notes = std::move(outcome.notes);
    partial = std::move(part);
  });
  return partial;
}

// What a query that became native queries is answered with; the outcome is that of both.
//
// Some leaves are read back from the native data of others: of families that are asked for in part,
// the mapping is given all of the data, so that a leaf has the same value in every read.
Document Mapper::reply(const Query& query, Document queries, Format format,
                       const DeviceData& device_data, Outcome& outcome) {
  begin("selecting native data");
  if (!query.families.roots.empty()) {
    try {
      append(queries.roots, native_queries(query.families, query.content).roots);
    } catch (ReadRefused& refused) {
      outcome.refusal = std::move(refused.refusal);
      outcome.notes.clear();
      return {};
    }
  }
  const Document data = device_data(queries, query.content);
  const InputTree input(data, Operation::kWrite);
  Request run(framework_, input,
              {.request_op = request_op(query.content),
               .record_calls = format == Format::kCalls,
               .trace = options_.trace});
  enter_subinterfaces(run, concerned(query.expanded));
  Outcome reply = outcome_of(run, read_back(run, plugin_.read_back));
  outcome.refusal = std::move(reply.refusal);
  outcome.text += reply.text;
  if (outcome.refusal) {
    outcome.notes.clear();
    return {};
  }
  append(outcome.notes, std::move(reply.notes));
  const Document all = to_document(run.output(), "reply");
  return query.values_choose ? select_chosen(all, query.asked) : select_data(all, query.asked);
}

// What the device has of what it is asked for.
Document Mapper::device_data(const Document& queries, Content content,
                             const std::vector<std::string>* few) const {
  return with_summary(select_data(part_asked(models_, device_.device().native, queries), queries),
                      queries, content, [&] {
                        return few == nullptr ? ipv4_summary(models_, device_)
                                              : ipv4_summary(models_, device_, *few);
                      });
}

// The same, of queries that concern a group.
Document Mapper::group_data(const ReadGroup& group, const Document& queries, Content content,
                            DataSelector& native) const {
  return with_summary(native.select(queries), queries, content,
                      [&] { return ipv4_summary(models_, device_, group.native_names); });
}

// The subinterfaces that a read names and the device has.
std::vector<SubinterfaceName> Mapper::concerned(const Document& read) const {
  auto names = subinterfaces_in(read.roots);
  std::erase_if(names, [&](const SubinterfaceName& name) {
    return !device_.knows(native_name(name.interface, name.index));
  });
  return names;
}

Outcome Mapper::report(const ReportRequest& request, Format format) {
  const ActiveDevice active(device_);
  const Document document = read_checked(models_, request.data, [this](Document& data) {
    check_is_data(data);
    check_native_data(models_, data, plugin_.read_back, InputRules(options_));
  });
  check_device(document);
  const InputTree input(document, Operation::kWrite);
  Request run(framework_, input,
              {.request_op = request_op(request.content),
               .record_calls = format == Format::kCalls,
               .trace = options_.trace});
  // Those of summaries: no other native data is arranged by them.
  enter_subinterfaces(run, subinterfaces_in(document.roots));
  return finish(run, read_back(run, plugin_.read_back), format,
                "the data holds nothing that is mapped to OpenConfig");
}

// What a read asks of the interfaces with these native names. Each part is expanded by itself:
// merged first, one that names a leaf would narrow one that names the container around it.
Mapper::Query Mapper::query_of(ReadInput read, const std::vector<std::string>& native_names) {
  Query query;
  query.content = read.content;
  query.notes = std::move(read.notes);
  query.values_choose = read.values_choose;
  query.asked = joined(read.values_choose ? read.openconfig.chosen : read.openconfig.asked);
  QueryExpansion expansion(models_, query.content, native_names,
                           [this](SchemaPath path) { return is_refused(path); });
  for (Document& part : read.openconfig.asked) {
    Document families = {part.name, families_in_part(part.roots)};
    expansion.expand(part, query.notes);
    merge_document(query.expanded, std::move(part));
    std::vector<std::string> mentioned;
    expansion.expand(families, mentioned);
    merge_document(query.families, std::move(families));
  }
  put_whole_lists_first(query.expanded.roots);
  return query;
}

// Asks the mapping itself, by a read of the leaf alone.
bool Mapper::is_refused(SchemaPath path) {
  const auto [known, is_new] = refused_.try_emplace(path.back(), false);
  if (is_new) {
    Document document;
    document.roots.push_back(probes_.node(path));
    const InputTree input(document, Operation::kWrite);
    Request probe(framework_, input, {.request_op = YFW_MAP_REQUEST_READ_STATE});
    known->second = map_input(probe, plugin_.openconfig) == kUnsupported;
  }
  return known->second;
}

Outcome Mapper::finish(Request& request, cerrno result, Format format, const char* nothing) const {
  Outcome outcome = outcome_of(request, result);
  if (outcome.refusal) {
    return outcome;
  }
  if (!has_effect(*request.output().root())) {
    outcome.notes.emplace_back(nothing);
  }
  if (format != Format::kCalls) {
    begin("printing");
    outcome.text = print_document(to_document(request.output(), "output"), format, outcome.notes);
  }
  return outcome;
}

}  // namespace ocifip
