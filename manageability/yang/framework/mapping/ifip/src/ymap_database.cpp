#include "ymap_database.h"

#include <dlfcn.h>
#include <unistd.h>

namespace ymap {

constinit sysdb_handle* dhcp_database = nullptr;

namespace {

// The database client library's file: a setting of the build or, without it, the library that the
// client's functions have been bound to.
const char* client_file() {
#ifdef OCIFIP_SYSDB_CLIENT
  return OCIFIP_SYSDB_CLIENT;
#else
  Dl_info client{};
  const bool found = dladdr(reinterpret_cast<void*>(&_sysdb_bind), &client) != 0;
  return found && client.dli_fname != nullptr ? client.dli_fname : "";
#endif
}

}  // namespace

bool database_available() {
  static bool available = false;
  if (!available) {
    available = access(client_file(), R_OK) == 0;
  }
  return available;
}

cerrno bind_database(sysdb_handle*& handle, const char* prefix, sysdb_bind_mode mode) {
  return database_available() ? _sysdb_bind(&handle, prefix, mode) : SYSDB_UNAVAILABLE;
}

cerrno bind_failed(const Call& call, const char* ifname, cerrno result) {
  YMAP_TRACE(call, "IP-MAP: sysdb_bind failed : %s for interface %s (IP Address not found)",
             cerr_strerror(result), ifname);
  return result;
}

void release_database(sysdb_handle*& handle) {
  if (handle == nullptr) {
    return;
  }
  if (database_available()) {
    _sysdb_unbind(handle);
  }
  handle = nullptr;
}

}  // namespace ymap
