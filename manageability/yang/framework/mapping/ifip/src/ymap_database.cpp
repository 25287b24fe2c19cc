#include "ymap_database.h"

#include <unistd.h>

// Path of the database client library's file, a setting of the build.
#ifndef OCIFIP_SYSDB_CLIENT
#error "OCIFIP_SYSDB_CLIENT names the file of the database client library"
#endif

namespace ymap {

constinit sysdb_handle* dhcp_database = nullptr;

bool database_available() {
  static bool available = false;
  if (!available) {
    available = access(OCIFIP_SYSDB_CLIENT, R_OK) == 0;
  }
  return available;
}

cerrno bind_database(sysdb_handle*& handle, const char* prefix, sysdb_bind_mode mode) {
  return database_available() ? _sysdb_bind(&handle, prefix, mode) : SYSDB_UNAVAILABLE;
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
