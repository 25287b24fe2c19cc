#include "recording_platform.h"

#include <arpa/inet.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "im/address_manager.h"
#include "im/event_manager.h"
#include "im/interface_manager.h"
#include "inet/inet.h"
#include "log/log.h"
#include "text/bounded_text.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/text.h"

namespace recording {

Platform platform;

namespace {

std::string tag_of(const Node* node) {
  if (node == nullptr) {
    return "(null)";
  }
  return node->tag != nullptr ? node->tag : "(untagged)";
}

std::string quoted(const char* value) {
  return value != nullptr ? std::string("=\"") + value + "\"" : "(null)";
}

std::string shown_source(const Node* source) {
  static constexpr std::array names = {" write", " replace", " 2", " delete", " remove", " none"};
  if (source == nullptr) {
    return "";
  }
  const bool rewritten = (source->flags & NIDL_YFW_FLAG_OPERATION_OVERRIDE) != 0;
  return std::string(names.at(source->edit_operation)) + (rewritten ? "!" : "");
}

// "#N: TRC: FUNCTION:LINE ctx=POINTER,MESSAGE" as "trc FUNCTION MESSAGE".
std::string shown_line(const std::string& line) {
  const std::size_t level = line.find(": ") + 2;
  const std::size_t function = level + 5;
  std::string shown = line.substr(level, 3) == "ERR" ? "err " : "trc ";
  shown += line.substr(function, line.find(':', function) - function) + " ";
  for (const char character : line.substr(line.find(',') + 1)) {
    shown += character == '\n' ? std::string("\\n") : std::string(1, character);
  }
  return shown;
}

void expect_root(const Node* out, const char* service) {
  if (out != platform.root) {
    platform.faults.push_back(std::string(service) + " with another output tree");
  }
}

// Takes the top of a stack off, which must be the node.
void take_off(std::vector<const Node*>& stack, const Node* node, const char* service) {
  if (stack.empty() || stack.back() != node) {
    platform.faults.push_back(std::string(service) + " " + tag_of(node) + " out of order");
  } else {
    stack.pop_back();
  }
}

}  // namespace

std::string short_module(const char* module_namespace) {
  const std::string name = module_namespace != nullptr ? module_namespace : "(null)";
  for (const std::string common :
       {"urn:halvane:yang:Halvane-Ombrix-", "http://openconfig.net/yang/interfaces/",
        "http://openconfig.net/yang/", "urn:example:"}) {
    if (name.starts_with(common)) return name.substr(common.size());
  }
  return name;
}

void Platform::fail(const std::string& service, int nth, cerrno result) {
  failures_[{service, calls_of(service) + nth}] = result;
}

int Platform::calls_of(const std::string& service) const {
  const auto found = counts_.find(service);
  return found != counts_.end() ? found->second : 0;
}

std::string Platform::recorded(unsigned kinds) const {
  std::string lines;
  for (const auto& [kind, line] : calls_) {
    lines += (kind & kinds) != 0 ? line + "\n" : "";
  }
  return lines;
}

void Platform::forget_calls() {
  calls_.clear();
  log.clear();
  buffer.clear();
}

cerrno Platform::outcome(const std::string& service) {
  for (const std::string& counted : {service, std::string("any")}) {
    const auto failure = failures_.find({counted, ++counts_[counted]});
    if (failure != failures_.end()) {
      return failure->second;
    }
  }
  return 0;
}

void Platform::record(Kind kind, std::string line) { calls_.emplace_back(kind, std::move(line)); }

}  // namespace recording

using namespace recording;

// --- mapping services ----------------------------------------------------------------------------

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx*, Node* base, const char* path,
                                         const char* module_namespace, const char* value,
                                         const Node* delete_source, Node** created, uint32_t create,
                                         uint32_t flags) {
  const auto named = platform.base_names.find(base);
  const bool below_root = named == platform.base_names.end();
  if (below_root) {
    expect_root(base, "add");
  }
  if (platform.on_write) {
    platform.on_write();
  }
  const cerrno result = platform.serve(
      kWrites, "add", short_module(module_namespace),
      path + (value != nullptr ? " " + quoted(value) : "") + shown_source(delete_source) +
          (create != 0 ? " new" : "") +
          (flags != YFW_MAP_PATH_CURRENT ? " flags=" + std::to_string(flags) : "") +
          (created != nullptr ? " stored" : "") + (below_root ? "" : " base=" + named->second));
  const auto node = platform.created_nodes.find(path);
  if (result == 0 && created != nullptr && node != platform.created_nodes.end()) {
    *created = node->second;
  }
  return result;
}

cerrno yfw_map_add_leaf_from_xpath(yfw_map_ctx*, const Node* in, Node* out, const char* top,
                                   const char* module_namespace, const char* const* steps,
                                   uint32_t step_count) {
  expect_root(out, "mirror");
  std::string path;
  for (uint32_t i = 0; i < step_count; ++i) {
    path += steps[i];
  }
  return platform.serve(kWrites, "mirror", short_module(module_namespace), path,
                        "top=" + std::string(top), "steps=" + std::to_string(step_count),
                        "in=" + tag_of(in));
}

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx*, const Node* node, uint32_t kind) {
  platform.hierarchy.push_back(node);
  return platform.serve(kHierarchy, "push", kind, tag_of(node));
}

cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx*, const Node* node) {
  take_off(platform.hierarchy, node, "pop");
  return platform.serve(kHierarchy, "pop", tag_of(node));
}

cerrno yfw_map_update_current_list_node(yfw_map_ctx*, const char* list_path) {
  return platform.serve(kHierarchy, "current", list_path);
}

cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* ctx, const Node* entry, Node* out) {
  expect_root(out, "list");
  const cerrno result = platform.serve(kHierarchy, "list", tag_of(entry));
  if (result == 0 && platform.takes_entries && ctx->request_state != nullptr) {
    platform.output_list.push_back(entry);
    ++ctx->request_state->output_list_depth;
  }
  return result;
}

cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* ctx, const Node* entry, Node* out) {
  expect_root(out, "unlist");
  take_off(platform.output_list, entry, "unlist");
  --ctx->request_state->output_list_depth;
  return platform.serve(kHierarchy, "unlist", tag_of(entry));
}

cerrno yfw_map_util_itree_stack_push(yfw_itree_stack* stack, const Node* node, const Node* second,
                                     uint32_t reserved) {
  const bool plain = second == nullptr && reserved == 0;
  const cerrno result =
      platform.serve(kHierarchy, "remember", tag_of(node) + (plain ? "" : " with arguments"));
  if (result == 0) {
    stack->nodes.push_back(node);
  }
  return result;
}

cerrno yfw_map_util_itree_stack_pop(yfw_itree_stack* stack) {
  if (stack->nodes.empty()) {
    platform.faults.emplace_back("forget of nothing");
    return 1;
  }
  const Node* top = stack->nodes.back();
  stack->nodes.pop_back();
  return platform.serve(kHierarchy, "forget", tag_of(top));
}

cerrno yfw_map_util_itree_stack_peak(yfw_itree_stack* stack, const Node** top) {
  const cerrno result = stack->nodes.empty() ? 1 : platform.outcome("peak");
  if (result == 0) {
    *top = stack->nodes.back();
  }
  return result;
}

int yfw_map_is_request_delete(const Node* node) {
  const int operation = node->edit_operation;
  return operation == NIDL_YFW_EDIT_DELETE || operation == NIDL_YFW_EDIT_REMOVE ? 1 : 0;
}

int yfw_map_is_request_add(yfw_map_ctx* ctx, const Node* node, Node* out) {
  expect_root(out, "is_request_add");
  platform.record(kQuestions, "is_request_add " + tag_of(node));
  const uint32_t request = ctx->request_state->request.request_op;
  const bool reads =
      request == YFW_MAP_REQUEST_READ_CONFIG || request == YFW_MAP_REQUEST_READ_STATE;
  return !reads && yfw_map_is_request_delete(node) == 0 ? 1 : 0;
}

cerrno yfw_map_check_oc_leafref(yfw_map_ctx*, const char* list_path, const char* container,
                                const char* key_value, const Node* entry) {
  return platform.serve(kQuestions, "leafref", list_path, container, quoted(key_value),
                        tag_of(entry));
}

void yfw_oc_error_path(yfw_map_ctx*) { platform.record(kRefusals, "error_path"); }

// --- text and memory -----------------------------------------------------------------------------

char* yfw_strdup(const char* text, const char* allocation_name) {
  const cerrno result =
      platform.serve(kRefusals, "strdup", quoted(text), std::string("as ") + allocation_name);
  return result == 0 && text != nullptr ? strdup(text) : nullptr;
}

void ombos_named_free(void* copy) {
  platform.record(kRefusals, "free " + quoted(static_cast<const char*>(copy)));
  std::free(copy);
}

// Writes a text behind the used part of a buffer, within its size; what does not fit is cut.
static cerrno write_bounded(const char* service, const char* caller, char* destination, size_t size,
                            size_t used, const char* source, size_t count) {
  const cerrno result = platform.serve(kTexts, service, caller, "size=" + std::to_string(size),
                                       "count=" + std::to_string(count), quoted(source));
  if (result != 0 || source == nullptr) {
    return result != 0 ? result : cerrno{YFW_TEXT_NULL};
  }
  const size_t wanted = strnlen(source, count);
  const size_t fits = std::min(wanted, size - used - 1);
  std::memcpy(destination + used, source, fits);
  destination[used + fits] = '\0';
  return fits < wanted ? cerrno{YFW_TEXT_NO_SPACE} : 0;
}

cerrno yfw_strncpy_s(const char* caller, char* destination, size_t size, const char* source,
                     size_t count) {
  return write_bounded("copy", caller, destination, size, 0, source, count);
}

cerrno yfw_strncat_s(const char* caller, char* destination, size_t size, const char* source,
                     size_t count) {
  return write_bounded("append", caller, destination, size, std::strlen(destination), source,
                       count);
}

int strcmp_s(const char* first, size_t maximum, const char* second, int* comparison) {
  platform.record(kTexts, "compare maximum=" + std::to_string(maximum) + " " + quoted(first) + " " +
                              quoted(second));
  *comparison = std::strncmp(first, second, maximum);
  return 0;
}

char* itoa(int value, char* buffer, int /*base*/) {
  std::sprintf(buffer, "%d", value);
  return buffer;
}

char* strupr(char* text) {
  std::transform(text, text + std::strlen(text), text,
                 [](unsigned char each) { return static_cast<char>(std::toupper(each)); });
  return text;
}

int yfw_map_do_these_match(const char* first, const char* second) {
  return first != nullptr && second != nullptr && std::strcmp(first, second) == 0 ? 1 : 0;
}

const char* cerr_strerror(cerrno code) {
  static std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "code %u", code);
  return text.data();
}

// --- logging -------------------------------------------------------------------------------------

int yfw_debug_should_log(const void* filter, uint32_t level) {
  if (filter != &platform || (level != YFW_LOG_ERROR && level != YFW_LOG_TRACE)) {
    platform.faults.emplace_back("should_log with another filter or level");
  }
  return (level == YFW_LOG_ERROR ? platform.logs_errors : platform.logs_traces) ? 1 : 0;
}

uint32_t ret_nc_yfw_trace_index_incr(void) { return ++platform.trace_sequence; }

void _ombos_dt_log_filter_adv(void* channel, uint32_t reserved_1, uint32_t reserved_2,
                              uint32_t reserved_3, uint32_t reserved_4, uint32_t reserved_5,
                              uint32_t* site_word, const char* format, ...) {
  std::array<char, 1024> text{};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  const uint32_t reserved = reserved_1 | reserved_2 | reserved_3 | reserved_4 | reserved_5;
  static std::map<const uint32_t*, std::string> formats;  // of all tests
  if (const std::string& known = formats.emplace(site_word, format).first->second;
      known != format) {
    platform.faults.push_back("the word of \"" + known + "\" is handed over with \"" + format +
                              "\"");
  }
  platform.log.push_back({channel, reserved, site_word, *site_word, format, text.data()});
}

void _lstrace(void* buffer, uint64_t flags, const char* line) {
  platform.buffer.push_back({buffer, flags, line});
  platform.record(kLines, shown_line(line));
}

// --- addresses -----------------------------------------------------------------------------------

int ombrix_inet_aton(const char* text, uint32_t* address) {
  return inet_pton(AF_INET, text, address) == 1 ? 1 : 0;
}

const char* ombrix_inet_ntoa(uint32_t address) {
  static std::array<char, OMBRIX_INET_TEXT_SIZE> text;
  return ombrix_inet_ntop(OMBRIX_AF_INET, &address, text.data(), text.size());
}

int ombrix_inet_pton(int family, const char* text, void* address) {
  return inet_pton(family, text, address);
}

const char* ombrix_inet_ntop(int family, const void* address, char* text, size_t size) {
  return inet_ntop(family, address, text, static_cast<socklen_t>(size));
}

int ipv4_compare_prefix(uint32_t first, uint32_t first_length, uint32_t second,
                        uint32_t second_length) {
  const auto masked = [](uint32_t address, uint32_t length) {
    return length == 0 ? 0 : ntohl(address) & (0xffffffffU << (32 - length));
  };
  const uint32_t one = masked(first, first_length);
  const uint32_t other = masked(second, second_length);
  return one == other ? 0 : one < other ? -1 : 1;
}

// --- interface manager ---------------------------------------------------------------------------

struct event_manager {};
struct imc_conn_ctx {};

static event_manager the_event_manager;
static imc_conn_ctx the_connection;

imc_connid yfw_ocifmgr_im_conn = kSiblingConnection;

cerrno event_manager_create(event_manager** manager) {
  *manager = &the_event_manager;
  return platform.serve(kDevice, "event_manager");
}

cerrno imc_control_server_bind(imc_conn_ctx** connection, uint32_t mode) {
  *connection = &the_connection;
  return platform.serve(kDevice, "bind", mode);
}

imc_connid imc_conn_ctx_to_connid(const imc_conn_ctx* connection) {
  return connection == &the_connection ? kConnection : 0;
}

cerrno imc_interface_find(imc_connid connection, uint32_t count, const char* const* names,
                          imc_handle* handles, uint32_t flags, cerrno* statuses) {
  const auto found = platform.interfaces.find(names[0]);
  handles[0] = static_cast<imc_handle>(std::distance(platform.interfaces.begin(), found));
  statuses[0] = found != platform.interfaces.end() ? 0 : IMC_INTERFACE_UNKNOWN;
  return platform.serve(kDevice, "find", connection, count, names[0], flags);
}

cerrno imc_control_server_unbind(imc_conn_ctx* connection) {
  return platform.serve(kDevice, "unbind", connection == &the_connection ? "" : "nothing");
}

cerrno imc_s_interface_find(imc_connid connection, const char* name, imc_handle* handle) {
  const auto found = platform.interfaces.find(name);
  const cerrno result = platform.serve(kDevice, "find", connection, name);
  if (result != 0) return result;
  *handle = static_cast<imc_handle>(std::distance(platform.interfaces.begin(), found));
  return found != platform.interfaces.end() ? 0 : IMC_INTERFACE_UNKNOWN;
}

cerrno imc_attr_query(imc_connid connection, uint32_t count, const imc_attr_request* requests,
                      uint32_t response_count, imc_attr_response** response) {
  const cerrno result = platform.serve(kDevice, "query", connection, count, requests[0].attribute,
                                       requests[0].length, response_count);
  if (result == 0) {
    void* block = std::malloc(sizeof(imc_attr_response) + sizeof(imc_handle));
    auto* data = static_cast<uint8_t*>(block) + sizeof(imc_attr_response);
    std::memcpy(data, &requests[0].interface_handle, sizeof(imc_handle));
    *response = new (block) imc_attr_response{platform.attribute_status, sizeof(imc_handle), data};
  }
  return result;
}

cerrno im_internal_namestring(const char* name, char* internal, size_t size) {
  std::snprintf(internal, size, "internal-%s", name);
  return platform.serve(kDevice, "internal_name", name);
}

cerrno imc_ifname_to_location(imc_connid connection, const char* name, nodeid_t* node) {
  *node = 42;
  return platform.serve(kDevice, "location", connection, name);
}

// --- address codec: an attribute is the interface's handle ---------------------------------------

// A decoded list, with the memory of all its parts.
struct DecodedList {
  iparm_list list{};
  iparm_record record{};
  std::vector<iparm_secondary> secondaries;
};

static std::vector<std::unique_ptr<DecodedList>> decoded_lists;

cerrno iparm_al_c_init(event_manager* manager) {
  return platform.serve(kDevice, manager == &the_event_manager ? "codec" : "codec on nothing");
}

cerrno iparm_al_c_tlv2addr(const uint8_t* data, uint32_t length, uint32_t family,
                           iparm_list** list) {
  imc_handle handle = 0;
  std::memcpy(&handle, data, length);
  const Addresses& addresses = std::next(platform.interfaces.begin(), handle)->second;
  DecodedList& decoded = *decoded_lists.emplace_back(std::make_unique<DecodedList>());
  ++platform.lists_alive;
  decoded.list = {addresses.primary.address.empty() ? 0U : 1U, &decoded.record};
  inet_pton(AF_INET, addresses.primary.address.c_str(), decoded.record.primary);
  decoded.record.prefix_length = addresses.primary.length;
  for (const Prefix& each : addresses.secondaries) {
    iparm_secondary& secondary = decoded.secondaries.emplace_back();
    inet_pton(AF_INET, each.address.c_str(), secondary.address);
    secondary.prefix_length = each.length;
  }
  decoded.record.secondaries = decoded.secondaries.data();
  decoded.record.secondary_count = static_cast<uint32_t>(decoded.secondaries.size());
  *list = &decoded.list;
  return platform.serve(kDevice, "decode", family);
}

void iparm_al_c_free(iparm_list* list) {
  platform.lists_alive -= static_cast<int>(
      std::erase_if(decoded_lists, [list](const auto& decoded) { return &decoded->list == list; }));
}

// --- node identity and database ------------------------------------------------------------------

cerrno platform_get_my_nodeid(nodeid_t* node) {
  *node = 1;
  return platform.serve(kDevice, "my_node");
}

cerrno nodeid_to_str_external(nodeid_t node, char* text, size_t size) {
  std::snprintf(text, size, "node-%u", node);
  return platform.serve(kDevice, "node_name", node, size);
}

cerrno _sysdb_unbind(sysdb_handle* handle) {
  return platform.serve(kDevice, handle == kDatabase ? "unbind" : "unbind of another");
}

// The C library's own, so that tests decide whether the database client is installed.
extern "C" int access(const char* /*path*/, int mode) noexcept {
  platform.record(kDevice, mode == R_OK ? "readable?" : "access");
  return platform.client_installed ? 0 : -1;
}
