// The helpers that ask the interface manager: an interface's addresses, and its node.

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "im/event_manager.h"
#include "im/interface_manager.h"
#include "inet/inet.h"
#include "node/node.h"
#include "yfw/interfaces_mapping.h"
#include "yfw/text.h"
#include "yfw_map_ifip_util.h"
#include "ymap_request.h"

namespace ymap {

// Lines of a step are written under the name of whoever takes it.
#define CALLER_TRACE(ctx, caller, text, ...) \
  YMAP_EMIT(ctx, caller, YMAP_TRACE_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)
#define NODE_TRACE(ctx, text, ...) \
  YMAP_EMIT(ctx, __func__, YMAP_TRACE_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)

namespace {

// Made on first use and kept for the life of the library; one request runs at a time, so no lock.
event_manager* the_event_manager = nullptr;
bool address_codec_ready = false;
imc_conn_ctx* the_connection = nullptr;
imc_connid the_connection_id = 0;

cerrno prepare_address_codec(yfw_map_ctx* ctx, const char* caller) {
  if (the_event_manager == nullptr) {
    if (const cerrno result = event_manager_create(&the_event_manager); result != YMAP_OK) {
      the_event_manager = nullptr;
      CALLER_TRACE(ctx, caller, "IP-MAP : EVM fails.");
      return result;
    }
  }
  if (address_codec_ready) {
    return YMAP_OK;
  }
  const cerrno result = iparm_al_c_init(the_event_manager);
  address_codec_ready = result == YMAP_OK;
  if (!address_codec_ready) {
    CALLER_TRACE(ctx, caller, "IP-MAP : TLV init failed.");
  }
  return result;
}

cerrno bind_connection(yfw_map_ctx* ctx, const char* caller, imc_conn_ctx*& connection) {
  const cerrno result = imc_control_server_bind(&connection, IMC_BIND_MODE_CLIENT);
  if (result != YMAP_OK) {
    connection = nullptr;
    CALLER_TRACE(ctx, caller, "IP-MAP : Failed in binding.\n");
  }
  return result;
}

cerrno bind_interface_manager(yfw_map_ctx* ctx, const char* caller) {
  if (the_connection == nullptr) {
    const cerrno result = bind_connection(ctx, caller, the_connection);
    if (result != YMAP_OK) {
      return result;
    }
    CALLER_TRACE(ctx, caller, "IP-MAP: Success in binding.\n");
  }
  // One that had no identifier for a lookup may have it for the next.
  if (the_connection_id == 0) {
    the_connection_id = imc_conn_ctx_to_connid(the_connection);
  }
  return YMAP_OK;
}

void note_no_address(yfw_map_ctx* ctx) {
  if (AddressDb* db = address_db(ctx); db != nullptr) {
    db->no_address = 1;
  }
}

struct FreeBlock {
  void operator()(void* block) const { std::free(block); }
};
using Response = std::unique_ptr<imc_attr_response, FreeBlock>;

struct FreeAddressList {
  void operator()(iparm_list* list) const { iparm_al_c_free(list); }
};
using AddressList = std::unique_ptr<iparm_list, FreeAddressList>;

// A lookup of an interface.
struct Lookup {
  yfw_map_ctx* ctx;
  const char* caller;  // under whose name lines are written
  imc_connid connection;
  cerrno bound;  // what came of binding the connection
  const char* ifname;
};

#define LOOKUP_TRACE(lookup, text, ...) \
  CALLER_TRACE((lookup).ctx, (lookup).caller, text __VA_OPT__(, ) __VA_ARGS__)

// Finds the interface if the connection is bound; one line reports either failure.
cerrno find_interface(const Lookup& lookup, const InternalName& internal_name, imc_handle& handle) {
  const char* name = internal_name.data();
  cerrno result = lookup.bound;
  cerrno status = YMAP_OK;
  if (result == YMAP_OK) {
    result = imc_interface_find(lookup.connection, 1, &name, &handle, 0, &status);
  }
  if (result == YMAP_OK) {
    result = status;
  }
  if (result != YMAP_OK) {
    // The text of the result stands twice in the line, as it always has.
    LOOKUP_TRACE(lookup, "IP-MAP: Interface name %s not found,rc = %s, due to error %s\n",
                 lookup.ifname, cerr_strerror(result), cerr_strerror(result));
  }
  return result;
}

// An interface's attribute of addresses, of one family.
struct AddressAttribute {
  std::uint32_t family;
  std::uint32_t number;
  std::uint32_t length;
};
constexpr AddressAttribute kIpv4Addresses = {OMBRIX_AF_INET, IMC_ATTR_IPV4_ADDRESS,
                                             IMC_ATTR_IPV4_ADDRESS_LENGTH};
constexpr AddressAttribute kIpv6Addresses = {OMBRIX_AF_INET6, IMC_ATTR_IPV6_ADDRESS,
                                             IMC_ATTR_IPV6_ADDRESS_LENGTH};

// Asks for an interface's addresses. `has_attribute` is what the interface manager's status says.
cerrno query_addresses(const Lookup& lookup, imc_handle handle, const AddressAttribute& attribute,
                       Response& response, bool& has_attribute) {
  const imc_attr_request request{handle, attribute.number, attribute.length};
  imc_attr_response* answer = nullptr;
  const cerrno result = imc_attr_query(lookup.connection, 1, &request, 1, &answer);
  response.reset(answer);
  if (result != YMAP_OK) {
    LOOKUP_TRACE(lookup,
                 "IP-MAP: imc_attr_query failed : %s for interface %s (IP Address not found)",
                 cerr_strerror(result), lookup.ifname);
    return result;
  }
  has_attribute = answer->status == YMAP_OK;
  if (!has_attribute) {
    LOOKUP_TRACE(
        lookup,
        "IP-MAP: imc_attr_query: status failed : %s for interface %s (IP Address not found)",
        cerr_strerror(answer->status), lookup.ifname);
  }
  return answer->status;
}

cerrno decode_addresses(const Lookup& lookup, const imc_attr_response& response,
                        std::uint32_t family, AddressList& list) {
  iparm_list* decoded = nullptr;
  const cerrno result = iparm_al_c_tlv2addr(response.data, response.length, family, &decoded);
  list.reset(decoded);
  if (result != YMAP_OK) {
    LOOKUP_TRACE(lookup, "IP-MAP: TLV2ADDR failed with error : %s\n", cerr_strerror(result));
    return YMAP_ERR_ADDRESS_LIST;
  }
  return YMAP_OK;
}

// What a lookup of addresses finds.
struct FoundAddresses {
  AddressList list;
  bool is_known = true;  // the interface, with the attribute
};

cerrno find_addresses(const Lookup& lookup, const AddressAttribute& attribute,
                      FoundAddresses& found) {
  InternalName internal_name{};
  if (const cerrno result =
          convert_to_internal_ifname(lookup.ctx, internal_name, lookup.ifname, lookup.caller);
      result != YMAP_OK) {
    return result;
  }
  imc_handle handle = 0;
  if (const cerrno result = find_interface(lookup, internal_name, handle); result != YMAP_OK) {
    found.is_known = false;
    return result;
  }
  Response response;
  const cerrno result = query_addresses(lookup, handle, attribute, response, found.is_known);
  return result != YMAP_OK ? result
                           : decode_addresses(lookup, *response, attribute.family, found.list);
}

// A connection of its own, for one lookup.
class Connection {
 public:
  Connection(yfw_map_ctx* ctx, const char* caller)
      : result_(bind_connection(ctx, caller, connection_)) {}
  ~Connection() {
    if (result_ == YMAP_OK) {
      imc_control_server_unbind(connection_);
    }
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] cerrno result() const { return result_; }
  [[nodiscard]] imc_connid id() const { return imc_conn_ctx_to_connid(connection_); }

 private:
  imc_conn_ctx* connection_ = nullptr;
  cerrno result_;
};

}  // namespace

cerrno get_interface_address(yfw_map_ctx* ctx, const char* ifname, AddressText& address,
                             std::uint32_t* prefix_length, std::uint32_t family) {
  constexpr const char* kCaller = "get_interface_address";
  prepare_address_codec(ctx, kCaller);
  const cerrno bound = bind_interface_manager(ctx, kCaller);
  const Lookup lookup = {ctx, kCaller, the_connection_id, bound, ifname};
  FoundAddresses found;
  AddressAttribute attribute = kIpv4Addresses;
  attribute.family = family;
  const cerrno result = find_addresses(lookup, attribute, found);
  if (!found.is_known) {
    note_no_address(ctx);
  }
  if (result != YMAP_OK || found.list == nullptr || found.list->count == 0) {
    return result;
  }
  const iparm_record& record = found.list->records[0];
  *prefix_length = record.prefix_length;
  ombrix_inet_ntop(OMBRIX_AF_INET, record.primary, address.data(), address.size());
  populate_local_db(ctx, &record);
  if (const AddressDb* db = address_db(ctx);
      db != nullptr && db->primary.address == 0 && record.prefix_length == 0) {
    note_no_address(ctx);
  }
  LOOKUP_TRACE(lookup, "IP-MAP: Source address for interface %s is %s/%d\n", ifname, address.data(),
               static_cast<int>(record.prefix_length));
  return YMAP_OK;
}

cerrno get_interface_addr_info(yfw_map_ctx* ctx, const char* ifname, IpAddressText& address,
                               std::uint32_t* prefix_length, std::uint32_t family) {
  if (const cerrno result = prepare_address_codec(ctx, __func__); result != YMAP_OK) {
    return result;
  }
  const Connection connection(ctx, __func__);
  if (connection.result() != YMAP_OK) {
    return connection.result();
  }
  FoundAddresses found;
  const AddressAttribute& attribute = family == OMBRIX_AF_INET ? kIpv4Addresses : kIpv6Addresses;
  const cerrno result =
      find_addresses({ctx, __func__, connection.id(), YMAP_OK, ifname}, attribute, found);
  if (result != YMAP_OK) {
    return result;
  }
  if (found.list == nullptr || found.list->count == 0) {
    return YMAP_ERR_NO_RECORD;
  }
  const iparm_record& record = found.list->records[0];
  constexpr std::array<std::uint8_t, IPARM_ADDRESS_SIZE> kNoAddress{};
  if (std::memcmp(record.primary, kNoAddress.data(), kNoAddress.size()) == 0) {
    return YMAP_ERR_NO_RECORD;
  }
  *prefix_length = record.prefix_length;
  ombrix_inet_ntop(static_cast<int>(family), record.primary, address.data(), address.size());
  return YMAP_OK;
}

bool interface_exists(yfw_map_ctx* ctx, const char* caller, const char* ifname) {
  const cerrno bound = bind_interface_manager(ctx, caller);
  InternalName internal_name{};
  imc_handle handle = 0;
  return convert_to_internal_ifname(ctx, internal_name, ifname, caller) == YMAP_OK &&
         find_interface({ctx, caller, the_connection_id, bound, ifname}, internal_name, handle) ==
             YMAP_OK;
}

cerrno interface_handle(yfw_map_ctx* ctx, const char* caller, const char* ifname,
                        imc_handle& handle) {
  InternalName internal_name{};
  cerrno result = bind_interface_manager(ctx, caller);
  if (result == YMAP_OK) {
    result = convert_to_internal_ifname(ctx, internal_name, ifname, caller);
  }
  return result != YMAP_OK ? result
                           : imc_s_interface_find(the_connection_id, internal_name.data(), &handle);
}

namespace {

cerrno write_node_name(yfw_map_ctx* ctx, const char* caller, nodeid_t id, NodeName& node) {
  NodeName text{};
  if (const cerrno result = nodeid_to_str_external(id, text.data(), text.size());
      result != YMAP_OK) {
    return result;
  }
  return copy_reported(ctx, caller, node, text.data(), node.size(), __LINE__);
}

}  // namespace

cerrno get_node_info(yfw_map_ctx* ctx, NodeName& node, const char* ifname) {
  NativeName name{};
  if (const cerrno result = copy_reported(ctx, __func__, name, ifname, name.size(), __LINE__);
      result != YMAP_OK) {
    return result;
  }
  NativeName internal_name{};
  im_internal_namestring(name.data(), internal_name.data(), internal_name.size());
  NODE_TRACE(ctx, "IP-MAP: internal name of interface %s is %s", ifname, internal_name.data());
  nodeid_t id = 0;
  const cerrno result = imc_ifname_to_location(yfw_ocifmgr_im_conn, internal_name.data(), &id);
  NODE_TRACE(ctx, "IP-MAP: location of interface %s : %s", ifname, cerr_strerror(result));
  if (result == YMAP_OK) {
    write_node_name(ctx, __func__, id, node);
  }
  return result;
}

cerrno get_node_info_for_invalid_interface(yfw_map_ctx* ctx, NodeName& node) {
  node.fill('\0');
  nodeid_t id = 0;
  if (platform_get_my_nodeid(&id) != YMAP_OK) {
    NODE_TRACE(ctx, "\nNo Node id found.");
    return YMAP_OK;
  }
  return write_node_name(ctx, __func__, id, node);
}

}  // namespace ymap
