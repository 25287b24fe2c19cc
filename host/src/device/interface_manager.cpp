// The interface manager's client and the event manager, for im/interface_manager.h and
// im/event_manager.h.
#include "im/interface_manager.h"

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "device/address_codec.h"
#include "device/device_directory.h"
#include "guarded.h"
#include "im/event_manager.h"
#include "inet/inet.h"
#include "result_codes.h"
#include "yfw/text.h"

// There is one of each, and every caller shares it.
struct event_manager {};
struct imc_conn_ctx {
  imc_connid id;
};

namespace ocifip {
namespace {

// The device's directory, if its interface manager can be asked through a connection; else null.
const DeviceDirectory* reachable(imc_connid connection) {
  const DeviceDirectory* directory = DeviceDirectory::active();
  const bool there =
      connection != 0 && directory != nullptr && !directory->device().interface_manager_absent;
  return there ? directory : nullptr;
}

cerrno find_interface(const DeviceDirectory& directory, const char* name, imc_handle* handle) {
  if (name == nullptr || handle == nullptr) {
    return kInvalidArgument;
  }
  const std::uint32_t found = directory.handle_of(name);
  if (found == 0) {
    return IMC_INTERFACE_UNKNOWN;
  }
  *handle = found;
  return kOk;
}

// A response and its data in one block, as its receiver frees it.
imc_attr_response* make_response(cerrno status, const std::vector<std::uint8_t>& data) {
  auto* block = static_cast<std::uint8_t*>(std::malloc(sizeof(imc_attr_response) + data.size()));
  if (block == nullptr) {
    return nullptr;
  }
  auto* response = reinterpret_cast<imc_attr_response*>(block);
  *response = {status, static_cast<std::uint32_t>(data.size()), block + sizeof(imc_attr_response)};
  if (!data.empty()) {
    std::memcpy(response->data, data.data(), data.size());
  }
  return response;
}

imc_attr_response* answer(const DeviceDirectory& directory, const imc_attr_request& request) {
  const InterfaceRecord* record = directory.interface(request.interface_handle);
  if (record == nullptr) {
    return make_response(IMC_INTERFACE_UNKNOWN, {});
  }
  const bool is_ipv6 = request.attribute == IMC_ATTR_IPV6_ADDRESS;
  if ((!is_ipv6 && request.attribute != IMC_ATTR_IPV4_ADDRESS) ||
      !is_room_for_addresses(request.length)) {
    return make_response(kInvalidArgument, {});
  }
  return make_response(kOk, encode_addresses(is_ipv6 ? record->ipv6 : record->ipv4,
                                             is_ipv6 ? OMBRIX_AF_INET6 : OMBRIX_AF_INET,
                                             request.interface_handle, request.length));
}

}  // namespace
}  // namespace ocifip

using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kNoMemory;
using ocifip::kOk;
using ocifip::kUnavailable;

extern "C" {

cerrno event_manager_create(event_manager** manager) {
  static event_manager the_manager;
  if (manager == nullptr) {
    return kInvalidArgument;
  }
  *manager = &the_manager;
  return kOk;
}

cerrno imc_control_server_bind(imc_conn_ctx** connection, uint32_t /*mode*/) {
  static imc_conn_ctx the_connection{2};
  if (connection == nullptr) {
    return kInvalidArgument;
  }
  if (ocifip::reachable(the_connection.id) == nullptr) {
    return kUnavailable;
  }
  *connection = &the_connection;
  return kOk;
}

cerrno imc_control_server_unbind(imc_conn_ctx* connection) {
  return connection == nullptr ? kInvalidArgument : kOk;
}

imc_connid imc_conn_ctx_to_connid(const imc_conn_ctx* connection) {
  return connection == nullptr ? 0 : connection->id;
}

cerrno imc_interface_find(imc_connid connection, uint32_t count, const char* const* names,
                          imc_handle* handles, uint32_t /*flags*/, cerrno* statuses) {
  const auto* directory = ocifip::reachable(connection);
  if (directory == nullptr) {
    return kUnavailable;
  }
  if (names == nullptr || handles == nullptr || statuses == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    for (uint32_t i = 0; i < count; ++i) {
      statuses[i] = ocifip::find_interface(*directory, names[i], &handles[i]);
    }
    return kOk;
  });
}

cerrno imc_s_interface_find(imc_connid connection, const char* name, imc_handle* handle) {
  const auto* directory = ocifip::reachable(connection);
  return directory == nullptr
             ? kUnavailable
             : guarded([&] { return ocifip::find_interface(*directory, name, handle); });
}

cerrno imc_attr_query(imc_connid connection, uint32_t count, const imc_attr_request* requests,
                      uint32_t response_count, imc_attr_response** response) {
  const auto* directory = ocifip::reachable(connection);
  if (directory == nullptr) {
    return kUnavailable;
  }
  if (count != 1 || requests == nullptr || response_count != 1 || response == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    imc_attr_response* made = ocifip::answer(*directory, requests[0]);
    if (made == nullptr) {
      return kNoMemory;
    }
    *response = made;
    return kOk;
  });
}

cerrno imc_ifname_to_location(imc_connid connection, const char* name, nodeid_t* node) {
  const auto* directory = ocifip::reachable(connection);
  if (directory == nullptr) {
    return kUnavailable;
  }
  if (node == nullptr) {
    return kInvalidArgument;
  }
  return guarded([&] {
    imc_handle handle = 0;
    const cerrno result = ocifip::find_interface(*directory, name, &handle);
    if (result != kOk) {
      return result;
    }
    *node = directory->interface(handle)->node;
    return kOk;
  });
}

cerrno im_internal_namestring(const char* name, char* internal, size_t size) {
  if (name == nullptr) {
    return kInvalidArgument;
  }
  const char* caller = __func__;
  return guarded([&] {
    return yfw_strncpy_s(caller, internal, size, ocifip::internal_name(name).c_str(), size);
  });
}

}  // extern "C"
