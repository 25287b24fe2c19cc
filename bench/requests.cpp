// Whole requests: the plug-in beside its floor, libyang and a stylesheet.
#include <algorithm>
#include <cctype>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data.h"
#include "device/summaries.h"
#include "io/device_file.h"
#include "io/print_document.h"
#include "io/read_document.h"
#include "job.h"
#include "mapping/mapper.h"
#include "mapping/query_expansion.h"
#include "measure.h"
#include "others.h"

namespace ocifip::bench {
namespace {

// Subinterfaces that are mapped between two looks at the clock, at least.
constexpr std::size_t kBatch = 2000;
constexpr std::size_t kSmallEdits = 200;
// What is mapped to is compared up to this size.
constexpr std::size_t kCompared = 1000;

// A request as one mapping or two, and the same data for others.
struct Subject {
  Subject(const Layout& layout, const std::string& native)
      : device(read_device(platform().models, "device", device_json(layout, native))) {}

  DeviceDirectory device;
  std::vector<std::unique_ptr<Job>> jobs = {};
  std::string json = {};  // what libyang is asked to parse, or nothing
  std::string xml = {};   // what the stylesheet is asked to transform, or nothing

  void add(JobRequest request) {
    jobs.push_back(std::make_unique<Job>(device, std::move(request)));
  }
};

Document read_json(const std::string& text) {
  return read_document(platform().models, {"data", text, Encoding::kJson});
}

// --- requests ------------------------------------------------------------------------------------

void add_replace(Subject& subject, const Layout& layout, bool traced) {
  subject.json = openconfig_json(layout);
  subject.xml = print(parse(platform().models.context(), subject.json, LYD_JSON), LYD_XML);
  subject.add({.document = read_json(subject.json),
               .settings = {.request_op = YFW_MAP_REQUEST_REPLACE,
                            .operation = Operation::kReplace,
                            .trace = traced}});
}

// A replace would not do: the mapping of VRRP groups rewrites operations of the input, which is no
// call that could be recorded.
void add_whole_merge(Subject& subject, const Layout& layout, bool traced) {
  subject.json = whole_openconfig_json(layout);
  subject.add({.document = read_json(subject.json), .settings = {.trace = traced}});
}

// The same data as that of the replace, of which libyang and the stylesheet are asked.
void add_merge(Subject& subject, const Layout& layout, bool traced) {
  subject.add({.document = read_json(openconfig_json(layout)), .settings = {.trace = traced}});
}

JobRequest read_back_of(const Subject& subject, std::uint32_t request_op, bool traced) {
  return {.document = subject.device.device().native.whole(),
          .settings = {.request_op = request_op, .trace = traced},
          .direction = Direction::kToOpenConfig};
}

void add_report(Subject& subject, const Layout& layout, bool traced) {
  subject.json = native_json(layout);
  subject.add(read_back_of(subject, YFW_MAP_REQUEST_READ_CONFIG, traced));
}

// A read of all that the data holds, configuration and state, of each subinterface of the device.
Document whole_query(const DeviceDirectory& device) {
  constexpr const char* kLeaves[] = {"addresses/address/config/ip",
                                     "addresses/address/config/prefix-length",
                                     "addresses/address/state/ip",
                                     "addresses/address/state/prefix-length",
                                     "config/mtu",
                                     "state/mtu"};
  const Models& models = platform().models;
  Document query;
  for (const std::string leaf : kLeaves) {
    merge_document(
        query, read_path(models,
                         "/interfaces/interface/subinterfaces/subinterface/openconfig-if-ip:ipv4/" +
                             leaf));
  }
  std::vector<std::string> notes;
  QueryExpansion(models, Content::kAll, device.interface_names(), [](SchemaPath) {
    return false;
  }).expand(query, notes);
  return query;
}

// The query, and the reply made of the configuration and of the summary.
void add_get(Subject& subject, const Layout& /*layout*/, bool traced) {
  Document query = whole_query(subject.device);
  JobRequest reply = read_back_of(subject, YFW_MAP_REQUEST_READ_STATE, traced);
  reply.document.roots.push_back(ipv4_summary(platform().models, subject.device));
  reply.entered = subinterfaces_in(query.roots);
  subject.add(
      {.document = std::move(query),
       .settings = {.request_op = YFW_MAP_REQUEST_READ_STATE, .is_query = true, .trace = traced}});
  subject.add(std::move(reply));
}

std::string no_native_json(const Layout& /*layout*/) { return "{}"; }

// Native configuration of every model, as the edit makes it.
std::string whole_native_json(const Layout& layout) {
  const Subject empty(layout, "{}");
  EditRequest edit;
  edit.document = Source{"edit", whole_openconfig_json(layout), Encoding::kJson};
  edit.operation = DefaultOperation::kReplace;
  Mapper mapper(platform().models, empty.device, platform().plugin.entries(), HostOptions{});
  std::vector<std::string> notes;
  return print_document(*mapper.apply(edit, Format::kTree).native, Format::kJson, notes);
}

void add_whole_report(Subject& subject, const Layout& /*layout*/, bool traced) {
  subject.add(read_back_of(subject, YFW_MAP_REQUEST_READ_CONFIG, traced));
}

struct RequestRow {
  const char* name;
  void (*add)(Subject& subject, const Layout& layout, bool traced);
  std::string (*native)(const Layout& layout);  // what the device has
};
constexpr RequestRow kRequests[] = {{"replace", add_replace, native_json},
                                    {"merge", add_merge, native_json},
                                    {"report", add_report, native_json},
                                    {"get", add_get, native_json},
                                    {"whole-merge", add_whole_merge, no_native_json},
                                    {"whole-report", add_whole_report, whole_native_json}};

// --- the others do the same ----------------------------------------------------------------------

// Elements of an XML document without blanks between them.
std::string without_blanks(const std::string& xml) {
  std::string text;
  for (const char character : xml) {
    if (text.empty() || text.back() != '>' || std::isspace(character) == 0) {
      text.push_back(character);
    }
  }
  return text;
}

void expect_same(const std::string& one, const std::string& other, const char* what) {
  if (one != other || one.empty()) {
    throw std::runtime_error(std::string(what) + " maps the request to something else:\n" + one +
                             "\n" + other);
  }
}

// --- measuring -----------------------------------------------------------------------------------

void measure_jobs(const std::shared_ptr<Subject>& subject, std::size_t size, std::size_t times) {
  constexpr std::pair<const char*, Mapping> kMappings[] = {
      {"plugin", Mapping::kPlugin}, {"floor", Mapping::kFloor}, {"reading", Mapping::kReading}};
  for (const auto& [what, mapping] : kMappings) {
    measure(size, what, [subject, times, mapping = mapping] {
      double seconds = 0;
      for (const auto& job : subject->jobs) {
        seconds += job->seconds(mapping, times);
      }
      return seconds;
    });
  }
  for (const auto& job : subject->jobs) {
    if (size <= kCompared) {
      expect_same(job->result(Mapping::kPlugin, Format::kTree),
                  job->result(Mapping::kFloor, Format::kTree), "the floor");
    }
  }
}

void measure_libyang(const std::shared_ptr<Subject>& subject, std::size_t size, std::size_t times) {
  const ly_ctx* models = platform().models.context();
  measure(size, "parse_json", [subject, models, times] {
    return seconds_of(times, [&] { return parse(models, subject->json, LYD_JSON); });
  });
  const auto tree = std::make_shared<LibyangTree>(parse(models, subject->json, LYD_JSON));
  measure(size, "print_json",
          [tree, times] { return seconds_of(times, [&] { return print(*tree, LYD_JSON); }); });
  if (!subject->xml.empty()) {
    measure(size, "parse_xml", [subject, models, times] {
      return seconds_of(times, [&] { return parse(models, subject->xml, LYD_XML); });
    });
  }
}

void measure_stylesheet(Subject& subject, std::size_t size, std::size_t times) {
  const auto transformation = std::make_shared<Transformation>(OCIFIP_STYLESHEET, subject.xml);
  if (size <= kCompared) {
    expect_same(without_blanks(subject.jobs[0]->result(Mapping::kPlugin, Format::kXml)),
                without_blanks(transformation->result()), "the stylesheet");
  }
  measure(size, "stylesheet", [transformation, times] {
    return seconds_of(times, [&] { return transformation->transformed(); });
  });
}

}  // namespace

void measure_request(std::string_view request, bool traced, std::size_t size) {
  const auto* row = std::find_if(std::begin(kRequests), std::end(kRequests),
                                 [&](const RequestRow& each) { return each.name == request; });
  if (row == std::end(kRequests)) {
    throw std::runtime_error("no group of benchmarks has this name: " + std::string(request));
  }
  const Layout layout{.subinterfaces = size};
  const std::size_t times = counting ? 1 : std::max<std::size_t>(1, kBatch / size);
  const auto subject = std::make_shared<Subject>(layout, row->native(layout));
  row->add(*subject, layout, traced);
  measure_jobs(subject, size, times);
  if (traced) {
    return;
  }
  if (!subject->json.empty()) {
    measure_libyang(subject, size, times);
  }
  if (!subject->xml.empty()) {
    measure_stylesheet(*subject, size, times);
  }
}

// The replace alone, on a device that has none of the subinterfaces: of a million, all that is
// compared with it would not fit into a machine's memory.
void measure_growth(std::size_t size) {
  const auto subject = std::make_shared<Subject>(Layout{.subinterfaces = 1}, "{}");
  subject->add(
      {.document = read_json(openconfig_json({.subinterfaces = size})),
       .settings = {.request_op = YFW_MAP_REQUEST_REPLACE, .operation = Operation::kReplace}});
  const std::size_t times = std::max<std::size_t>(1, kBatch / size);
  measure(size, "plugin",
          [subject, times] { return subject->jobs[0]->seconds(Mapping::kPlugin, times); });
}

// One more address for one interface in the middle of a device with so many.
void measure_small_edit(std::size_t size) {
  const Layout layout{.subinterfaces = size, .per_interface = 1};
  const auto subject = std::make_shared<Subject>(layout, native_json(layout));
  const std::string json = small_edit_json(layout, size / 2);
  subject->add({.document = read_json(json)});
  measure(size, "plugin",
          [subject] { return subject->jobs[0]->seconds(Mapping::kPlugin, kSmallEdits); });
  const auto mapper = std::make_shared<Mapper>(platform().models, subject->device,
                                               platform().plugin.entries(), HostOptions{});
  measure(size, "whole", [subject, mapper, json] {
    EditRequest edit;
    edit.document = Source{"small edit", json, Encoding::kJson};
    return seconds_of(kSmallEdits, [&] { return mapper->edit(edit, Format::kJson); });
  });
}

}  // namespace ocifip::bench
