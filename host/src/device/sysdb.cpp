// The database client, for sysdb/sysdb.h: the explicit items of the device file.
#include "sysdb/sysdb.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/device_directory.h"
#include "result_codes.h"
#include "services/guarded.h"

struct sysdb_handle {
  std::string prefix;
};

struct sysdb_list {
  struct Item {
    std::string name;
    const ocifip::DatabaseItem* item;
  };
  std::vector<Item> items;
  std::size_t next = 0;
};

namespace ocifip {
namespace {

// The default VRF of every device.
constexpr std::uint32_t kDefaultVrf = 0x60000000;

using Items = std::map<std::string, DatabaseItem>;

// The items of the database, or null when there is none.
const Items* database() {
  const DeviceDirectory* directory = DeviceDirectory::active();
  return directory == nullptr || directory->device().sysdb_absent ? nullptr
                                                                  : &directory->device().sysdb;
}

// A record is a description in the device file; its bytes take a codec to make.
bool is_record(const DatabaseItem& item) { return !item.record.empty(); }

cerrno read_item(const DatabaseItem& item, void** buffer, std::uint32_t* length,
                 std::uint32_t* type) {
  if (is_record(item)) {
    return kRecordUnreadable;
  }
  // Empty items have a buffer, too.
  void* copy = std::malloc(item.text.size() + 1);
  if (copy == nullptr) {
    return kNoMemory;
  }
  std::memcpy(copy, item.text.c_str(), item.text.size() + 1);
  *buffer = copy;
  *length = static_cast<std::uint32_t>(item.text.size());
  *type = item.type;
  return kOk;
}

// Whether a filter selects an item: all of its name, or the first components of it.
bool is_selected(std::string_view name, const char* filter) {
  if (filter == nullptr) {
    return true;
  }
  const std::string_view wanted = filter;
  return name.starts_with(wanted) &&
         (name.size() == wanted.size() || wanted.ends_with('/') || name[wanted.size()] == '/');
}

// The items below a path, which ends in "/", in the order of their names.
std::unique_ptr<sysdb_list> list_items(const Items& items, const std::string& path,
                                       const char* filter) {
  auto list = std::make_unique<sysdb_list>();
  for (auto item = items.lower_bound(path); item != items.end() && item->first.starts_with(path);
       ++item) {
    std::string name = item->first.substr(path.size());
    if (!name.empty() && is_selected(name, filter)) {
      list->items.push_back({std::move(name), &item->second});
    }
  }
  return list;
}

std::string list_path(const sysdb_handle& handle, const char* path) {
  std::string full = handle.prefix + path;
  return full.ends_with('/') ? full : full + '/';
}

}  // namespace
}  // namespace ocifip

using ocifip::database;
using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kOk;

extern "C" {

cerrno _sysdb_bind(sysdb_handle** handle, const char* prefix, uint32_t /*mode*/) {
  if (handle == nullptr || prefix == nullptr) {
    return kInvalidArgument;
  }
  if (database() == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded([&] {
    *handle = new sysdb_handle{prefix};
    return kOk;
  });
}

cerrno _sysdb_unbind(sysdb_handle* handle) {
  delete handle;
  return handle == nullptr ? kInvalidArgument : kOk;
}

cerrno sysdb_item_get(sysdb_handle* handle, const char* path, void** buffer, uint32_t* length,
                      uint32_t* type) {
  if (handle == nullptr || path == nullptr || buffer == nullptr || length == nullptr ||
      type == nullptr) {
    return kInvalidArgument;
  }
  const auto* items = database();
  if (items == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded([&] {
    const auto item = items->find(handle->prefix + path);
    return item == items->end() ? SYSDB_ITEM_NOT_FOUND
                                : ocifip::read_item(item->second, buffer, length, type);
  });
}

cerrno sysdb_datalist(sysdb_handle* handle, const char* path, const char* filter, sysdb_list** list,
                      uint32_t* count) {
  if (handle == nullptr || path == nullptr || list == nullptr || count == nullptr) {
    return kInvalidArgument;
  }
  const auto* items = database();
  if (items == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded([&] {
    auto found = ocifip::list_items(*items, ocifip::list_path(*handle, path), filter);
    if (found->items.empty()) {
      return SYSDB_LIST_EMPTY;
    }
    *count = static_cast<uint32_t>(found->items.size());
    *list = found.release();
    return kOk;
  });
}

cerrno sysdb_datalist_next(sysdb_list* list, const char** name, const void** buffer,
                           uint32_t* length, uint32_t* type) {
  if (list == nullptr || name == nullptr || buffer == nullptr || length == nullptr ||
      type == nullptr) {
    return kInvalidArgument;
  }
  if (list->next == list->items.size()) {
    return SYSDB_LIST_EMPTY;
  }
  const auto& [item_name, item] = list->items[list->next++];
  if (ocifip::is_record(*item)) {
    return ocifip::kRecordUnreadable;
  }
  *name = item_name.c_str();
  *buffer = item->text.data();
  *length = static_cast<uint32_t>(item->text.size());
  *type = item->type;
  return kOk;
}

void sysdb_datalist_free(sysdb_list* list) { delete list; }

uint32_t rsi_c_vrf_id_dflt(void) { return ocifip::kDefaultVrf; }

}  // extern "C"
