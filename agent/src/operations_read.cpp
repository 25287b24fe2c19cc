#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "ocifip/messages.h"
#include "operation_parts.h"

namespace ocifip::agent {
namespace {

// What is asked for.
struct Filter {
  const xmlNode* element = nullptr;  // of a subtree filter; null: everything that can be reached
  XmlDocument document{};            // that it is in
  std::optional<XPath> xpath{};      // chooses among that
};

Filter filter_of(const Call& call, const xmlNode* given) {
  Filter filter;
  if (given == nullptr) return filter;
  if (type_of(given) == FilterType::kSubtree) {
    filter.document = without_attributes(given);
  } else {
    filter.xpath = xpath_of(given);
    const Elements reach =
        reach_of(*filter.xpath, [&](const std::string& name_space, const std::string& name) {
          return call.service.host.paths_to(name_space, name);
        });
    if (!reach.empty()) filter.document = parse_xml("<filter>" + reach + "</filter>");
  }
  if (filter.document) filter.element = top(filter.document);
  return filter;
}

// What an expression may take.
constexpr std::chrono::seconds kPatience{30};

constexpr std::array kOwn = {kLibrary, kMonitoring, kStreams};

bool is_own(const xmlNode* element) {
  return std::find(kOwn.begin(), kOwn.end(), namespace_of(element)) != kOwn.end();
}

// The agent's own state that a filter asks for.
Elements own_state(const Call& call, const Filter& filter) {
  const Service& service = call.service;
  const auto is_asked = [&](std::string_view name_space) {
    if (filter.element == nullptr) return true;
    const auto asked = elements(filter.element);
    return std::any_of(asked.begin(), asked.end(), [&](const xmlNode* each) {
      return namespace_of(each).empty() || namespace_of(each) == name_space;
    });
  };
  Elements all;
  if (is_asked(kLibrary)) all += yang_library(service.modules);
  if (is_asked(kMonitoring)) {
    all += netconf_state(service.modules, service.datastores, service.clients, service.counters,
                         service.start);
  }
  if (is_asked(kStreams)) all += streams();
  return filter.element == nullptr ? all : select_subtree(all, filter.element);
}

// What is to be read of the device; nothing when that is nothing.
std::optional<QueryRequest> query_of(const Filter& filter, Content content) {
  QueryRequest request;
  request.content = content;
  if (filter.element == nullptr) return request;
  const auto asked = elements(filter.element);
  if (std::all_of(asked.begin(), asked.end(), is_own)) return std::nullopt;
  request.values_choose = true;
  const auto is_device = [](const xmlNode* each) { return !is_own(each); };
  request.document =
      Source{"filter", print_content(filter.element, "filter", Blanks::kTrimmed, is_device),
             Encoding::kXml};
  return request;
}

// A read of the device beside state of the agent's own.
class DataReply : public LongReply {
 public:
  DataReply(Call& call, const Configuration& content, const Filter& filter,
            const std::optional<QueryRequest>& query, Elements own)
      : host_(call.service.host), xpath_(filter.xpath), data_(std::move(own)) {
    if (query) reading_ = host_.read(content, *query);
  }

  Step step() override {
    if (reading_) {
      if (reading_->step()) return Step::kMore;
      take_read();
    }
    if (!xpath_) return Step::kDone;
    if (!selection_) {
      selection_.emplace(
          std::exchange(data_, {}), *xpath_,
          [this](const Path& path) { return host_.list_keys(path); }, kPatience);
    }
    return selection_->step();
  }

  Elements finish() override {
    Elements data = selection_ ? selection_->finish() : std::move(data_);
    data.insert(0, "<data>");
    data += "</data>";
    return data;
  }

 private:
  void take_read() {
    Outcome outcome = reading_->finish();
    reading_.reset();
    if (outcome.refusal) throw OperationError(error_of(*outcome.refusal));
    data_ = std::move(outcome.text.append(data_));
  }

  Host& host_;
  std::optional<XPath> xpath_;
  Elements data_;
  std::unique_ptr<Reading> reading_;
  std::optional<XPathSelection> selection_;
};

}  // namespace

Reply get(Call& call) {
  Parameters parameters(call.element);
  const Filter filter = filter_of(call, parameters.find("filter"));
  parameters.finish();
  return std::make_unique<DataReply>(call, call.service.datastores.content(Datastore::kRunning),
                                     filter, query_of(filter, Content::kAll),
                                     own_state(call, filter));
}

Reply get_config(Call& call) {
  Parameters parameters(call.element);
  const Datastore source = datastore_in(parameters.need("source"));
  const Filter filter = filter_of(call, parameters.find("filter"));
  parameters.finish();
  call.target = name_of(source);
  return std::make_unique<DataReply>(call, call.service.datastores.content(source), filter,
                                     query_of(filter, Content::kConfig), Elements());
}

Reply get_schema(Call& call) {
  Parameters parameters(call.element);
  const std::string name = parameters.needed_text("identifier");
  const std::string revision = parameters.text("version").value_or("");
  const std::string format = parameters.text("format").value_or("yang");
  parameters.finish();
  call.target = name;
  if (format.substr(format.find(':') + 1) != "yang") {
    throw OperationError(
        element_error(tags::kInvalidValue, "format",
                      in_quotes(format) + " is no format of modules here: \"yang\" is"));
  }
  const auto text = call.service.host.module_text(name, revision);
  if (!text) {
    throw OperationError(
        element_error(tags::kInvalidValue, "identifier",
                      "no module " + in_quotes(name) +
                          (revision.empty() ? "" : " of the revision " + in_quotes(revision))));
  }
  return "<data xmlns=\"" + std::string(kMonitoring) + "\">" + escaped(*text) + "</data>";
}

}  // namespace ocifip::agent
