#include "core.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "names.h"
#include "notifications.h"
#include "ocifip/messages.h"
#include "path_element.h"
#include "rpc_error.h"

namespace ocifip::agent {
namespace {

constexpr const char* kNoMessage = "a message that is no \"rpc\" of NETCONF";

// The attributes of an <rpc>, which its reply repeats.
std::string attributes_of(const xmlNode* rpc) {
  std::string text;
  for (const xmlNs* each = rpc->nsDef; each != nullptr; each = each->next) {
    if (each->prefix == nullptr) continue;
    text += std::string(" xmlns:") + reinterpret_cast<const char*>(each->prefix) + "=\"" +
            escaped(reinterpret_cast<const char*>(each->href)) + "\"";
  }
  for (const xmlAttr* each = rpc->properties; each != nullptr; each = each->next) {
    const auto* node = reinterpret_cast<const xmlNode*>(each);
    const bool has_prefix = each->ns != nullptr && each->ns->prefix != nullptr;
    text += " ";
    if (has_prefix) text += std::string(reinterpret_cast<const char*>(each->ns->prefix)) + ":";
    text += std::string(name_of(node)) + "=\"" + escaped_value(value_of(each)) + "\"";
  }
  return text;
}

std::string reply(const std::string& attributes, Elements content) {
  // In place: replies may be long.
  content.insert(0, "<rpc-reply xmlns=\"" + std::string(kBase) + "\"" + attributes + ">");
  content += "</rpc-reply>";
  return content;
}

// The one operation in an <rpc>.
const xmlNode* operation_of(const xmlNode* rpc) {
  if (!attribute(rpc, "message-id")) {
    RpcError error = attribute_error(tags::kMissingAttribute, "message-id", "rpc",
                                     "an \"rpc\" without its \"message-id\"");
    error.type = "rpc";
    throw OperationError(std::move(error));
  }
  const auto given = elements(rpc);
  if (given.size() == 1) return given.front();
  RpcError error = element_error(given.empty() ? tags::kMissingElement : tags::kBadElement, "rpc",
                                 given.empty() ? "an \"rpc\" without an operation"
                                               : "an \"rpc\" with more than one operation");
  error.type = "rpc";
  throw OperationError(std::move(error));
}

const OperationRow& row_of(const xmlNode* operation) {
  const OperationRow* row = find_operation(namespace_of(operation), name_of(operation));
  if (row != nullptr) return *row;
  throw OperationError(
      RpcError{tags::kNotSupported, "no operation " + in_quotes(name_of(operation)) +
                                        " of the namespace " + in_quotes(namespace_of(operation))});
}

std::string duration_since(Clock::time_point start) {
  const std::chrono::duration<double, std::milli> passed = Clock::now() - start;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f ms", passed.count());
  return text.data();
}

// Clients of base:1.0 do not know a message that is malformed.
std::vector<RpcError> for_base_10(std::vector<RpcError> errors) {
  for (RpcError& error : errors) {
    if (error.tag == tags::kMalformed) error.tag = tags::kFailed;
  }
  return errors;
}

// What a function throws, as errors to be told.
template <class Function>
std::vector<RpcError> errors_of(const Function& function) {
  try {
    function();
    return {};
  } catch (const OperationError& error) {
    return error.errors;
  } catch (const InputError& error) {
    return {error_of(error)};
  } catch (const XmlError& error) {
    return {RpcError{tags::kMalformed, error.what(), "rpc"}};
  } catch (const std::bad_alloc&) {
    return {RpcError{tags::kResourceDenied, "not enough memory"}};
  } catch (const std::exception& error) {
    return {RpcError{tags::kFailed, error.what(), "application"}};
  }
}

}  // namespace

// One message of a client, and what is done for it.
class Core::Exchange {
 public:
  Exchange(Core& core, SessionId id, std::string message)
      : core_(core), id_(id), message_(std::move(message)) {}

  Step step() {
    const auto found = core_.clients_.find(id_);
    if (found == core_.clients_.end()) return Step::kDone;  // it has gone
    Client& client = found->second;
    if (client.ending == Ending::kKilled) return Step::kDone;
    try {
      return advance(client);
    } catch (const std::exception&) {
      client.peer.abort();  // there is no memory even for the error
      return Step::kDone;
    }
  }

 private:
  Step advance(Client& client) {
    Step step = Step::kDone;
    const auto errors = errors_of([&] { step = work(client); });
    if (!errors.empty()) step = Step::kDone;
    if (step == Step::kDone) finish(client, errors);
    return step;
  }

  Step work(Client& client);
  Step begin(Client& client);
  void finish(Client& client, const std::vector<RpcError>& errors);
  void write_log(const Client& client, const std::vector<RpcError>& errors) const;

  Core& core_;
  SessionId id_;
  std::string message_;
  Clock::time_point start_ = Clock::now();
  bool has_begun_ = false;
  XmlDocument document_;
  std::string attributes_;  // of the <rpc>
  std::string operation_;   // its name
  std::string target_;
  std::vector<std::string> notes_;
  std::unique_ptr<LongReply> long_reply_;
  Elements content_;  // of the reply; "" for none
};

Step Core::Exchange::work(Client& client) {
  if (!std::exchange(has_begun_, true)) return begin(client);
  const Step step = long_reply_->step();
  if (step == Step::kDone) content_ = long_reply_->finish();
  return step;
}

Step Core::Exchange::begin(Client& client) {
  document_ = parse_xml(message_);
  message_ = {};
  const xmlNode* message = top(document_);
  if (!client.is_open) {
    operation_ = "hello";
    core_.take_hello(client, message);
    return Step::kDone;
  }
  if (!is_named(message, kBase, "rpc")) throw XmlError(kNoMessage);
  attributes_ = attributes_of(message);
  const xmlNode* element = operation_of(message);
  operation_ = name_of(element);
  client.counters.in_rpcs += 1;
  core_.counters_.in_rpcs += 1;
  const OperationRow& row = row_of(element);
  if (row.changes && client.user.may_only_read) {
    throw OperationError(
        RpcError{tags::kAccessDenied, "user " + in_quotes(client.user.name) + " may only read"});
  }
  Call call = {core_.service_, client, element};
  Reply reply;
  const auto errors = errors_of([&] { reply = row.run(call); });
  target_ = std::move(call.target);
  notes_ = std::move(call.notes);
  if (!errors.empty()) throw OperationError(errors);
  document_.reset();
  if (auto* elements = std::get_if<Elements>(&reply)) {
    content_ = std::move(*elements);
    return Step::kDone;
  }
  long_reply_ = std::move(std::get<std::unique_ptr<LongReply>>(reply));
  return Step::kMore;
}

void Core::Exchange::finish(Client& client, const std::vector<RpcError>& errors) {
  if (!errors.empty()) {
    const bool is_rpc = client.is_open && !operation_.empty();
    core_.count_error(client, is_rpc);
    content_ = print(client.has_chunks ? errors : for_base_10(errors),
                     [this](std::string_view name, const std::string& path) {
                       return core_.path_element(name, path);
                     });
  }
  if (!content_.empty()) client.peer.send(reply(attributes_, std::move(content_)));
  write_log(client, errors);
  if (!client.is_open || client.ending == Ending::kClosed) client.peer.end();
  client.peer.resume();
}

void Core::Exchange::write_log(const Client& client, const std::vector<RpcError>& errors) const {
  std::string line = "session " + std::to_string(id_) + " user " + in_short(client.user.name) +
                     " " + (operation_.empty() ? "message" : in_short(operation_));
  if (!target_.empty()) line += " " + in_short(target_);
  line += errors.empty() ? " ok" : " " + errors.front().tag;
  line += " " + duration_since(start_);
  for (const RpcError& error : errors) line += "; " + in_short(error.message);
  for (const std::string& note : notes_) line += "; note: " + in_short(note);
  core_.log_(line);
}

Core::Core(Host& host, bool saves, Log log)
    : host_(host),
      log_(std::move(log)),
      modules_(host.modules()),
      datastores_(host, saves,
                  {[this](SessionId by, const Configuration& before, const Configuration& after) {
                     changed(by, before, after);
                   },
                   [this](SessionId by, ConfirmedCommit what, std::chrono::seconds timeout) {
                     notify(confirmed_commit(client(by), what, timeout));
                   },
                   [this](const std::string& remark) { log_(remark); }}),
      service_{host_,    modules_,  datastores_,
               clients_, counters_, std::chrono::system_clock::now()} {}

const Client* Core::client(SessionId id) const {
  const auto found = clients_.find(id);
  return found == clients_.end() ? nullptr : &found->second;
}

std::string Core::path_element(std::string_view name, const std::string& path) const {
  const DataPath known = host_.data_path(path);
  return known.text.empty() ? "" : agent::path_element(name, known, modules_);
}

void Core::open(SessionId id, User user, Peer& peer) {
  const auto [client, is_new] = clients_.try_emplace(id, Client{id, std::move(user), peer});
  counters_.in_sessions += 1;
  peer.send(hello(modules_, id));
  log_("session " + std::to_string(id) + " user " + in_short(client->second.user.name) + " begins" +
       (client->second.user.may_only_read ? ", to read only" : ""));
}

void Core::close(SessionId id, const std::string& reason) {
  const auto found = clients_.find(id);
  if (found == clients_.end()) return;
  const Elements event = session_end(found->second);
  const bool was_open = found->second.is_open;
  if (was_open && found->second.ending == Ending::kDropped) counters_.dropped_sessions += 1;
  found->second.subscription.reset();
  const auto errors = errors_of([&] { datastores_.end(id); });
  for (const RpcError& error : errors) log_("session " + std::to_string(id) + ": " + error.message);
  clients_.erase(found);
  if (was_open) notify(event);
  log_("session " + std::to_string(id) + " ends" + (reason.empty() ? "" : ": " + in_short(reason)));
}

// An error that is replied, to a request or to what is none.
void Core::count_error(Client& client, bool is_rpc) {
  const bool is_bad_rpc = client.is_open && !is_rpc;
  if (!client.is_open) counters_.in_bad_hellos += 1;
  for (Counters* each : std::initializer_list<Counters*>{&client.counters, &counters_}) {
    each->out_rpc_errors += 1;
    each->in_bad_rpcs += is_bad_rpc ? 1 : 0;
  }
}

void Core::refused(SessionId id) {
  const auto found = clients_.find(id);
  if (found != clients_.end()) count_error(found->second, false);
}

Work Core::received(SessionId id, std::string message) {
  const auto exchange = std::make_shared<Exchange>(*this, id, std::move(message));
  return [exchange] { return exchange->step(); };
}

// Chunks are used when both sides have them.
void Core::take_hello(Client& client, const xmlNode* message) {
  if (!is_named(message, kBase, "hello")) {
    throw XmlError("a message that is no \"hello\" of NETCONF, with which a session begins");
  }
  bool has_10 = false;
  bool has_11 = false;
  for (const xmlNode* child : elements(message)) {
    if (is_named(child, kBase, "session-id")) {
      throw XmlError("a \"session-id\" in the hello of a client");
    }
    for (const xmlNode* capability : elements(child)) {
      const std::string text = text_of(capability);
      has_10 = has_10 || text == kBase10;
      has_11 = has_11 || text == kBase11;
    }
  }
  if (!has_10 && !has_11) throw XmlError("a hello with neither base:1.0 nor base:1.1");
  client.has_chunks = has_11;
  if (has_11) client.peer.use(Framing::kChunks);
  client.is_open = true;
  notify(session_start(client));
}

void Core::expire() {
  const auto errors = errors_of([this] { datastores_.expire(); });
  for (const RpcError& error : errors) log_("a commit that was not confirmed: " + error.message);
}

void Core::changed(SessionId by, const Configuration& before, const Configuration& after) {
  if (!is_anyone_subscribed(clients_)) return;
  const auto changes = host_.changes(before, after);
  if (!changes.empty()) notify(config_change(client(by), changes, modules_));
}

void Core::notify(const Elements& event) {
  agent::notify(clients_, counters_, event,
                [this](const Path& path) { return host_.list_keys(path); });
}

}  // namespace ocifip::agent
