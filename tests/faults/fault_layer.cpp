#include "fault_layer.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <type_traits>

#include "bag/bag.h"
#include "im/address_manager.h"
#include "im/event_manager.h"
#include "im/interface_manager.h"
#include "inet/inet.h"
#include "node/node.h"
#include "ocifip/host.h"
#include "sysdb/sysdb.h"
#include "text/bounded_text.h"
#include "yfw/mapping.h"
#include "yfw/stack.h"
#include "yfw/text.h"

namespace ocifip::faults {
namespace {

FaultLayer* the_layer = nullptr;

// A service fails in one of two ways: it does nothing, or, when it gives something back, it does
// that and still reports a failure.
enum class Way { kUndone, kDone };

struct Service {
  std::string_view name;
  void* stand_in;
  void** real;
};

void append(std::string& texts, const char* text) {
  texts.append("[").append(text == nullptr ? "" : text).append("]");
}

template <typename Argument>
void append_text(std::string& texts, [[maybe_unused]] const Argument& argument) {
  if constexpr (std::is_same_v<Argument, const char*>) {
    append(texts, argument);
  } else if constexpr (std::is_same_v<Argument, const nidl_yfw_datatree*>) {
    append(texts, argument == nullptr ? nullptr : argument->tag);
  } else if constexpr (std::is_same_v<Argument, std::size_t>) {
    append(texts, std::to_string(argument).c_str());
  }
}

template <typename Argument>
void take_node(const nidl_yfw_datatree*& node, [[maybe_unused]] const Argument& argument) {
  if constexpr (std::is_convertible_v<Argument, const nidl_yfw_datatree*>) {
    node = node == nullptr ? argument : node;
  }
}

// The stand-in of one function, made from its signature.
template <auto kFunction, Way kWay, auto kFailure>
struct StandIn;

template <typename Result, typename... Arguments, Result (*kFunction)(Arguments...), Way kWay,
          auto kFailure>
struct StandIn<kFunction, kWay, kFailure> {
  static inline Result (*real)(Arguments...) = nullptr;
  static inline const char* name = "";

  static Result call(Arguments... arguments) {
    ServiceCall seen{name, nullptr, [&] {
                       std::string texts;
                       (append_text<Arguments>(texts, arguments), ...);
                       return texts;
                     }};
    (take_node<Arguments>(seen.node, arguments), ...);
    const bool fails = the_layer->fails && the_layer->fails(seen);
    if (!fails) {
      return real(arguments...);
    }
    if (kWay == Way::kDone) {
      real(arguments...);
    }
    return Result(kFailure);
  }

  static Service service(const char* its_name) {
    name = its_name;
    return {its_name, reinterpret_cast<void*>(&call), reinterpret_cast<void**>(&real)};
  }
};

// A function's address, whether or not the function may throw.
template <typename Result, typename... Arguments>
constexpr auto address_of(Result (*function)(Arguments...)) {
  return function;
}

#define FAILS(function, way, failure) \
  StandIn<address_of(&function), Way::way, failure>::service(#function)

const auto kServices = std::to_array<Service>({
    FAILS(_sysdb_bind, kUndone, kFault),
    FAILS(_sysdb_unbind, kDone, kFault),
    FAILS(bag_decode, kUndone, kFault),
    FAILS(bag_fetch_string, kUndone, kFault),
    FAILS(bag_register, kUndone, kFault),
    FAILS(bag_register_end, kUndone, kFault),
    FAILS(bag_register_start, kUndone, kFault),
    FAILS(calloc, kUndone, nullptr),
    FAILS(event_manager_create, kUndone, kFault),
    FAILS(im_internal_namestring, kUndone, kFault),
    FAILS(imc_attr_query, kUndone, kFault),
    FAILS(imc_conn_ctx_to_connid, kUndone, 0),
    FAILS(imc_control_server_bind, kUndone, kFault),
    FAILS(imc_control_server_unbind, kDone, kFault),
    FAILS(imc_ifname_to_location, kUndone, kFault),
    FAILS(imc_interface_find, kUndone, kFault),
    FAILS(imc_s_interface_find, kUndone, kFault),
    FAILS(iparm_al_c_init, kUndone, kFault),
    FAILS(iparm_al_c_tlv2addr, kUndone, kFault),
    FAILS(nodeid_to_str_external, kUndone, kFault),
    FAILS(ombrix_inet_aton, kUndone, 0),
    FAILS(ombrix_inet_pton, kUndone, 0),
    FAILS(platform_get_my_nodeid, kUndone, kFault),
    FAILS(strcmp_s, kUndone, 1),
    FAILS(sysdb_datalist, kUndone, kFault),
    FAILS(sysdb_datalist_next, kUndone, kFault),
    FAILS(hex_string2ip_addr, kUndone, kFault),
    FAILS(sysdb_item_get, kUndone, kFault),
    FAILS(yfw_add_to_output_list_ctx, kUndone, kFault),
    FAILS(yfw_map_add_leaf_from_xpath, kUndone, kFault),
    FAILS(yfw_map_add_to_node_hierarchy, kUndone, kFault),
    FAILS(yfw_map_check_oc_leafref, kUndone, kFault),
    FAILS(yfw_map_copy_trim_path_list_ctx, kUndone, kFault),
    FAILS(yfw_map_datatree_add_path_flagged, kUndone, kFault),
    FAILS(yfw_map_get_node_info, kUndone, kFault),
    FAILS(yfw_map_remove_from_node_hierarchy, kDone, kFault),
    FAILS(yfw_map_search_list, kUndone, kFault),
    FAILS(yfw_map_search_or_add_list, kUndone, kFault),
    FAILS(yfw_map_stitch_list_to_list, kUndone, kFault),
    FAILS(yfw_map_tree_xpath_operations, kUndone, kFault),
    FAILS(yfw_map_update_current_list_node, kUndone, kFault),
    FAILS(yfw_map_util_itree_stack_peak, kUndone, kFault),
    FAILS(yfw_map_util_itree_stack_pop, kDone, kFault),
    FAILS(yfw_map_util_itree_stack_push, kUndone, kFault),
    FAILS(yfw_remove_from_output_list_ctx, kDone, kFault),
    FAILS(yfw_strdup, kUndone, nullptr),
    FAILS(yfw_strncat_s, kUndone, kFault),
    FAILS(yfw_strncpy_s, kUndone, kFault),
});

// Services without a failure to report, or, writing a text, with none where there is room for it.
constexpr auto kNeverFail = std::to_array<std::string_view>({
    "_lstrace",
    "_ombos_dt_log_filter_adv",
    "bag_free_indirections",
    "bag_register_abort",
    "cerr_strerror",
    "inet_ntoa_r",
    "iparm_al_c_free",
    "sysdb_datalist_free",
    "ip_addr_string",
    "ipv4_compare_prefix",
    "ipv4_mask2prefixlen",
    "itoa",
    "ombos_named_free",
    "ombrix_inet_ntoa",
    "ombrix_inet_ntop",
    "ret_nc_yfw_trace_index_incr",
    "rsi_c_vrf_id_dflt",
    "strupr",
    "yfw_debug_should_log",
    "yfw_map_do_these_match",
    "yfw_map_free_trim_path_list_ctx",
    "yfw_map_is_request_add",
    "yfw_map_is_request_delete",
    "yfw_oc_error_path",
    "yfw_ocifmgr_im_conn",
    "ymap_ox_ocif_openconfiginterfaces_lvla_interfaces",
});

// --- the plug-in's references --------------------------------------------------------------------

// Names of C++, of which a sanitizer may add some, are no services.
bool is_platform(std::string_view symbol) {
  const void* address = dlsym(RTLD_DEFAULT, std::string(symbol).c_str());
  return !symbol.starts_with("_Z") &&
         are_in_one_library(address, reinterpret_cast<const void*>(&yfw_strdup));
}

void* stand_in_of(std::string_view symbol, void* address) {
  const auto service = std::find_if(kServices.begin(), kServices.end(),
                                    [&](const Service& each) { return each.name == symbol; });
  if (service != kServices.end()) {
    *service->real = address;
    return service->stand_in;
  }
  if (is_platform(symbol) &&
      std::find(kNeverFail.begin(), kNeverFail.end(), symbol) == kNeverFail.end()) {
    throw LoadError("no row says how " + std::string(symbol) + " fails");
  }
  return address;
}

}  // namespace

FaultLayer::FaultLayer(const std::string& plugin) : redirected_(plugin, stand_in_of) {
  the_layer = this;
}

FaultLayer::~FaultLayer() { the_layer = nullptr; }

}  // namespace ocifip::faults
