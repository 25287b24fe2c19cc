// The database client, for sysdb/sysdb.h: the explicit items of the device file, and those that the
// device's configuration and interfaces imply.
#include "sysdb/sysdb.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "device/device_directory.h"
#include "device/implied_items.h"
#include "device/item_bytes.h"
#include "guarded.h"
#include "ocifip/host.h"
#include "result_codes.h"

// A binding, shared by all who bind to the same subtree in the same mode.
struct sysdb_handle {
  std::string prefix;
  std::uint32_t mode = SYSDB_BIND_READ;
  std::size_t uses = 0;
};

struct sysdb_list {
  struct Item {
    std::string name;
    ocifip::DatabaseItem item;
    std::string bytes;  // once it has been read
  };
  std::vector<Item> items;
  std::size_t next = 0;
};

namespace ocifip {
namespace {

// The default VRF of every device.
constexpr std::uint32_t kDefaultVrf = 0x60000000;

// The device whose database is served, or null when there is none.
const DeviceDirectory* database() {
  const DeviceDirectory* directory = DeviceDirectory::active();
  return directory == nullptr || directory->device().sysdb_absent ? nullptr : directory;
}

// The bindings that are in use. Nothing is done with a handle that is not among them.
std::vector<std::unique_ptr<sysdb_handle>>& bindings() {
  static std::vector<std::unique_ptr<sysdb_handle>> live;
  return live;
}

bool is_bound(const sysdb_handle* handle) {
  return std::any_of(bindings().begin(), bindings().end(),
                     [handle](const auto& each) { return each.get() == handle; });
}

sysdb_handle* bind(const std::string& prefix, std::uint32_t mode) {
  auto& live = bindings();
  auto found = std::find_if(live.begin(), live.end(), [&](const auto& each) {
    return each->prefix == prefix && each->mode == mode;
  });
  if (found == live.end()) {
    live.push_back(std::make_unique<sysdb_handle>(sysdb_handle{prefix, mode, 0}));
    found = live.end() - 1;
  }
  ++(*found)->uses;
  return found->get();
}

std::uint32_t type_of(const DatabaseItem& item) {
  const bool is_plain_record = !item.record.empty() && item.type == 0;
  return is_plain_record ? SYSDB_TYPE_RECORD : item.type;
}

// The item of a path. An explicit item hides one that is implied.
std::optional<DatabaseItem> find_item(const DeviceDirectory& directory, const std::string& path) {
  for (const auto* items : {&directory.device().sysdb, &directory.configured_items()}) {
    const auto found = items->find(path);
    if (found != items->end()) {
      return found->second;
    }
  }
  return running_item(directory, path);
}

// The items whose paths begin with a text, in the order of their paths.
DatabaseItems items_beginning_with(const DeviceDirectory& directory, const std::string& path) {
  DatabaseItems found;
  for (const auto* items : {&directory.device().sysdb, &directory.configured_items()}) {
    for (auto item = items->lower_bound(path);
         item != items->end() && item->first.starts_with(path); ++item) {
      found.insert(*item);
    }
  }
  found.merge(running_items(directory, path));
  return found;
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

std::unique_ptr<sysdb_list> list_items(const DeviceDirectory& directory, const std::string& path,
                                       const char* filter) {
  auto list = std::make_unique<sysdb_list>();
  const std::string wanted = filter == nullptr ? path : path + filter;
  for (auto& [full, item] : items_beginning_with(directory, wanted)) {
    std::string name = full.substr(path.size());
    const bool is_nameless_elsewhere = name.ends_with('/');
    if (!is_nameless_elsewhere && is_selected(name, filter)) {
      list->items.push_back({std::move(name), std::move(item), {}});
    }
  }
  return list;
}

std::string list_path(const sysdb_handle& handle, const char* path) {
  std::string full = handle.prefix + path;
  return full.ends_with('/') ? full : full + '/';
}

// Opens the list of a path. Returns why it cannot be read, or that it has no items.
cerrno open_list(const DeviceDirectory& directory, const std::string& path, const char* filter,
                 sysdb_list** list, std::uint32_t* count) {
  if (const auto own = find_item(directory, path); own && own->error != kOk) {
    return own->error;
  }
  auto found = list_items(directory, path, filter);
  if (found->items.empty()) {
    return SYSDB_LIST_EMPTY;
  }
  *count = static_cast<std::uint32_t>(found->items.size());
  *list = found.release();
  return kOk;
}

// Makes an item's bytes; a record that cannot be encoded cannot be read.
cerrno read_bytes(const DatabaseItem& item, const DeviceDirectory& directory, std::string& bytes) {
  if (item.error != kOk) {
    return item.error;
  }
  try {
    bytes = item_bytes(item, directory);
    return kOk;
  } catch (const InputError&) {
    return kRecordUnreadable;
  }
}

cerrno copy_bytes(const std::string& bytes, void** buffer) {
  // Empty items have a buffer, too.
  void* copy = std::malloc(bytes.size() + 1);
  if (copy == nullptr) {
    return kNoMemory;
  }
  std::memcpy(copy, bytes.c_str(), bytes.size() + 1);
  *buffer = copy;
  return kOk;
}

cerrno read_item(const DeviceDirectory& directory, const std::string& path, void** buffer,
                 std::uint32_t* length, std::uint32_t* type) {
  const auto item = find_item(directory, path);
  if (!item) {
    return SYSDB_ITEM_NOT_FOUND;
  }
  std::string bytes;
  cerrno result = read_bytes(*item, directory, bytes);
  if (result == kOk) {
    result = copy_bytes(bytes, buffer);
  }
  if (result == kOk) {
    *length = static_cast<std::uint32_t>(bytes.size());
    *type = type_of(*item);
  }
  return result;
}

}  // namespace
}  // namespace ocifip

using ocifip::database;
using ocifip::guarded;
using ocifip::kInvalidArgument;
using ocifip::kOk;

extern "C" {

cerrno _sysdb_bind(sysdb_handle** handle, const char* prefix, uint32_t mode) {
  const bool is_known_mode = mode == SYSDB_BIND_READ || mode == SYSDB_BIND_VRRP;
  if (handle == nullptr || prefix == nullptr || !is_known_mode) {
    return kInvalidArgument;
  }
  if (database() == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded([&] {
    const std::string path = prefix;
    if (!path.starts_with('/') || !path.ends_with('/')) {
      return kInvalidArgument;
    }
    *handle = ocifip::bind(path, mode);
    return kOk;
  });
}

cerrno _sysdb_unbind(sysdb_handle* handle) {
  if (!ocifip::is_bound(handle)) {
    return kInvalidArgument;
  }
  if (--handle->uses == 0) {
    std::erase_if(ocifip::bindings(), [handle](const auto& each) { return each.get() == handle; });
  }
  return kOk;
}

cerrno sysdb_item_get(sysdb_handle* handle, const char* path, void** buffer, uint32_t* length,
                      uint32_t* type) {
  if (!ocifip::is_bound(handle) || path == nullptr || buffer == nullptr || length == nullptr ||
      type == nullptr) {
    return kInvalidArgument;
  }
  const auto* directory = database();
  if (directory == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded(
      [&] { return ocifip::read_item(*directory, handle->prefix + path, buffer, length, type); });
}

cerrno sysdb_datalist(sysdb_handle* handle, const char* path, const char* filter, sysdb_list** list,
                      uint32_t* count) {
  if (!ocifip::is_bound(handle) || path == nullptr || list == nullptr || count == nullptr) {
    return kInvalidArgument;
  }
  const auto* directory = database();
  if (directory == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  return guarded([&] {
    return ocifip::open_list(*directory, ocifip::list_path(*handle, path), filter, list, count);
  });
}

cerrno sysdb_datalist_next(sysdb_list* list, const char** name, const void** buffer,
                           uint32_t* length, uint32_t* type) {
  if (list == nullptr || name == nullptr || buffer == nullptr || length == nullptr ||
      type == nullptr) {
    return kInvalidArgument;
  }
  const auto* directory = database();
  if (directory == nullptr) {
    return SYSDB_UNAVAILABLE;
  }
  if (list->next == list->items.size()) {
    return SYSDB_LIST_EMPTY;
  }
  sysdb_list::Item& next = list->items[list->next++];
  const cerrno result =
      guarded([&] { return ocifip::read_bytes(next.item, *directory, next.bytes); });
  if (result == kOk) {
    *name = next.name.empty() ? nullptr : next.name.c_str();
    *buffer = next.bytes.data();
    *length = static_cast<uint32_t>(next.bytes.size());
    *type = ocifip::type_of(next.item);
  }
  return result;
}

void sysdb_datalist_free(sysdb_list* list) { delete list; }

uint32_t rsi_c_vrf_id_dflt(void) { return ocifip::kDefaultVrf; }

}  // extern "C"
