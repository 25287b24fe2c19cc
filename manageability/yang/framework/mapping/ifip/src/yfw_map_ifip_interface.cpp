// The helpers that ask the interface manager: an interface's addresses, and its node.

#include <cstdlib>
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
#define LOOKUP_TRACE(ctx, text, ...) CALLER_TRACE(ctx, kLookup, text __VA_OPT__(, ) __VA_ARGS__)
#define NODE_TRACE(ctx, text, ...) \
  YMAP_EMIT(ctx, __func__, YMAP_TRACE_TEXT(text) __VA_OPT__(, ) __VA_ARGS__)

namespace {

constexpr const char* kLookup = "get_interface_address";

// Made on first use and kept for the life of the library; one request runs at a time, so no lock.
event_manager* the_event_manager = nullptr;
bool address_codec_ready = false;
imc_conn_ctx* the_connection = nullptr;
imc_connid the_connection_id = 0;

void prepare_address_codec(yfw_map_ctx* ctx) {
  if (the_event_manager == nullptr && event_manager_create(&the_event_manager) != YMAP_OK) {
    the_event_manager = nullptr;
    LOOKUP_TRACE(ctx, "IP-MAP : EVM fails.");
    return;
  }
  if (address_codec_ready) {
    return;
  }
  address_codec_ready = iparm_al_c_init(the_event_manager) == YMAP_OK;
  if (!address_codec_ready) {
    LOOKUP_TRACE(ctx, "IP-MAP : TLV init failed.");
  }
}

cerrno bind_interface_manager(yfw_map_ctx* ctx, const char* caller) {
  if (the_connection != nullptr) {
    return YMAP_OK;
  }
  const cerrno result = imc_control_server_bind(&the_connection, IMC_BIND_MODE_CLIENT);
  if (result != YMAP_OK) {
    the_connection = nullptr;
    CALLER_TRACE(ctx, caller, "IP-MAP : Failed in binding.\n");
    return result;
  }
  the_connection_id = imc_conn_ctx_to_connid(the_connection);
  CALLER_TRACE(ctx, caller, "IP-MAP: Success in binding.\n");
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

// Finds the interface once the connection is bound; one line reports either failure.
cerrno find_interface(yfw_map_ctx* ctx, const char* caller, const char* ifname,
                      const char* internal_name, cerrno bound, imc_handle& handle) {
  cerrno result = bound;
  cerrno status = YMAP_OK;
  if (result == YMAP_OK) {
    result = imc_interface_find(the_connection_id, 1, &internal_name, &handle, 0, &status);
  }
  if (result == YMAP_OK) {
    result = status;
  }
  if (result != YMAP_OK) {
    // The text of the result stands twice in the line, as it always has.
    CALLER_TRACE(ctx, caller, "IP-MAP: Interface name %s not found,rc = %s, due to error %s\n",
                 ifname, cerr_strerror(result), cerr_strerror(result));
  }
  return result;
}

cerrno query_addresses(yfw_map_ctx* ctx, const char* ifname, imc_handle handle,
                       Response& response) {
  const imc_attr_request request{handle, IMC_ATTR_IPV4_ADDRESS, IMC_ATTR_IPV4_ADDRESS_LENGTH};
  imc_attr_response* answer = nullptr;
  const cerrno result = imc_attr_query(the_connection_id, 1, &request, 1, &answer);
  response.reset(answer);
  if (result != YMAP_OK) {
    LOOKUP_TRACE(ctx, "IP-MAP: imc_attr_query failed : %s for interface %s (IP Address not found)",
                 cerr_strerror(result), ifname);
    return result;
  }
  if (answer->status != YMAP_OK) {
    LOOKUP_TRACE(
        ctx, "IP-MAP: imc_attr_query: status failed : %s for interface %s (IP Address not found)",
        cerr_strerror(answer->status), ifname);
    note_no_address(ctx);
    return answer->status;
  }
  return YMAP_OK;
}

cerrno decode_addresses(yfw_map_ctx* ctx, const imc_attr_response& response, std::uint32_t family,
                        AddressList& list) {
  iparm_list* decoded = nullptr;
  const cerrno result = iparm_al_c_tlv2addr(response.data, response.length, family, &decoded);
  list.reset(decoded);
  if (result != YMAP_OK) {
    LOOKUP_TRACE(ctx, "IP-MAP: TLV2ADDR failed with error : %s\n", cerr_strerror(result));
    return YMAP_ERR_ADDRESS_LIST;
  }
  return YMAP_OK;
}

}  // namespace

cerrno get_interface_address(yfw_map_ctx* ctx, const char* ifname, AddressText& address,
                             std::uint32_t* prefix_length, std::uint32_t family) {
  prepare_address_codec(ctx);
  const cerrno bound = bind_interface_manager(ctx, kLookup);
  InternalName internal_name{};
  if (const cerrno result = convert_to_internal_ifname(ctx, internal_name, ifname, kLookup);
      result != YMAP_OK) {
    return result;
  }
  imc_handle handle = 0;
  if (const cerrno result =
          find_interface(ctx, kLookup, ifname, internal_name.data(), bound, handle);
      result != YMAP_OK) {
    note_no_address(ctx);
    return result;
  }
  Response response;
  if (const cerrno result = query_addresses(ctx, ifname, handle, response); result != YMAP_OK) {
    return result;
  }
  AddressList list;
  if (const cerrno result = decode_addresses(ctx, *response, family, list); result != YMAP_OK) {
    return result;
  }
  if (list == nullptr || list->count == 0) {
    return YMAP_OK;
  }
  const iparm_record& record = list->records[0];
  *prefix_length = record.prefix_length;
  ombrix_inet_ntop(OMBRIX_AF_INET, record.primary, address.data(), address.size());
  populate_local_db(ctx, &record);
  if (const AddressDb* db = address_db(ctx);
      db != nullptr && db->primary.address == 0 && record.prefix_length == 0) {
    note_no_address(ctx);
  }
  LOOKUP_TRACE(ctx, "IP-MAP: Source address for interface %s is %s/%d\n", ifname, address.data(),
               static_cast<int>(record.prefix_length));
  return YMAP_OK;
}

bool interface_exists(yfw_map_ctx* ctx, const char* caller, const char* ifname) {
  const cerrno bound = bind_interface_manager(ctx, caller);
  InternalName internal_name{};
  imc_handle handle = 0;
  return convert_to_internal_ifname(ctx, internal_name, ifname, caller) == YMAP_OK &&
         find_interface(ctx, caller, ifname, internal_name.data(), bound, handle) == YMAP_OK;
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
