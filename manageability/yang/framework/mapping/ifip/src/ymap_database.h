// Reading the configuration and state database: the gate before each use of its client, and the
// release of all that a read holds.
#ifndef YMAP_DATABASE_H_
#define YMAP_DATABASE_H_

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "bag/bag.h"
#include "sysdb/sysdb.h"
#include "yfw/context.h"
#include "yfw_map_ifip_util.h"
#include "ymap_frame.h"

namespace ymap {

// Whether the database client is installed: looked for until it is found, then remembered.
bool database_available();

// The binding that the DHCP read-back makes; null when there is none. It is the library's so that
// the unload hook can release what a call has left.
extern sysdb_handle* dhcp_database;

// Binds a handle to the subtree below a prefix. Returns the client's result, or SYSDB_UNAVAILABLE
// without trying when the client is not installed.
cerrno bind_database(sysdb_handle*& handle, const char* prefix, sysdb_bind_mode mode);

// Writes the line on a binding that failed, for an interface's sake. Returns the result.
cerrno bind_failed(const Call& call, const char* ifname, cerrno result);

// Releases a handle and forgets it; null is allowed. Without a client there is nothing to release.
void release_database(sysdb_handle*& handle);

// A handle that is bound for as long as the object lives.
class BoundDatabase {
 public:
  BoundDatabase(sysdb_handle*& handle, const char* prefix, sysdb_bind_mode mode)
      : handle_(handle), result_(bind_database(handle, prefix, mode)) {}
  ~BoundDatabase() {
    if (result_ == YMAP_OK) {
      release_database(handle_);
    }
  }
  BoundDatabase(const BoundDatabase&) = delete;
  BoundDatabase& operator=(const BoundDatabase&) = delete;

  [[nodiscard]] cerrno result() const { return result_; }

 private:
  sysdb_handle*& handle_;
  cerrno result_;
};

// The name of an interface in the form that the database has it in, which no name is too long for.
class DatabaseName {
 public:
  // The name as OpenConfig or the native models have it.
  explicit DatabaseName(const char* ifname) {
    std::snprintf(text_.data(), text_.size(), "%s", ifname);
    yfw_convert_ifname_to_internal_name(text_.data());
  }

  [[nodiscard]] const char* text() const { return text_.data(); }

 private:
  std::array<char, sizeof(yfw_map_request_state::current_ifname)> text_;
};

// An item's bytes.
class DatabaseItem {
 public:
  DatabaseItem() = default;
  ~DatabaseItem() { std::free(bytes_); }
  DatabaseItem(const DatabaseItem&) = delete;
  DatabaseItem& operator=(const DatabaseItem&) = delete;

  // Reads an item by its path below the binding's prefix. Returns the client's result.
  cerrno read(sysdb_handle* handle, const char* path) {
    return sysdb_item_get(handle, path, &bytes_, &length_, &type_);
  }

  [[nodiscard]] const void* bytes() const { return bytes_; }
  [[nodiscard]] std::uint32_t length() const { return length_; }

 private:
  void* bytes_ = nullptr;
  std::uint32_t length_ = 0;
  std::uint32_t type_ = 0;
};

// An item of a list; name and bytes are the list's.
struct ListedItem {
  const char* name;
  const void* bytes;
  std::uint32_t length;
  std::uint32_t type;
};

// A list of the database.
class DatabaseList {
 public:
  DatabaseList() = default;
  ~DatabaseList() {
    if (list_ != nullptr) {
      sysdb_datalist_free(list_);
    }
  }
  DatabaseList(const DatabaseList&) = delete;
  DatabaseList& operator=(const DatabaseList&) = delete;

  // Opens the list below a path; one that is empty, or is not there, has no items. Returns 0 or the
  // client's failure.
  //
  //   filter  key text that selects items, or null for all
  cerrno open(sysdb_handle* handle, const char* path, const char* filter = nullptr) {
    const cerrno result = sysdb_datalist(handle, path, filter, &list_, &count_);
    const bool is_empty = result == SYSDB_ITEM_NOT_FOUND || result == SYSDB_LIST_EMPTY;
    if (result != YMAP_OK) {
      list_ = nullptr;
      count_ = 0;
    }
    return is_empty ? YMAP_OK : result;
  }

  [[nodiscard]] std::uint32_t count() const { return count_; }

  // Reads the next item. Returns 0 or the client's failure.
  cerrno next(ListedItem& item) {
    return sysdb_datalist_next(list_, &item.name, &item.bytes, &item.length, &item.type);
  }

  // Calls a function with each item of a type, or of any (kAnyType), in their order, and passes
  // others over. Ends with the first failure: the client's, the function's, or that an item has no
  // name.
  template <typename Visit>
  cerrno each(std::uint32_t type, const Visit& visit) {
    for (std::uint32_t i = 0; i < count_; ++i) {
      ListedItem item{};
      cerrno result = next(item);
      if (result == YMAP_OK && item.name == nullptr) {
        result = YMAP_ERR_NAMELESS_ITEM;
      }
      if (result == YMAP_OK && (type == kAnyType || item.type == type)) {
        result = visit(item);
      }
      if (result != YMAP_OK) {
        return result;
      }
    }
    return YMAP_OK;
  }

  static constexpr std::uint32_t kAnyType = 0xffffffff;

 private:
  sysdb_list* list_ = nullptr;
  std::uint32_t count_ = 0;
};

// A record that has been decoded into its structure.
template <typename Structure>
class DecodedRecord {
 public:
  explicit DecodedRecord(const bag_descriptor& descriptor) : descriptor_(descriptor) {}
  ~DecodedRecord() {
    if (tried_) {
      bag_free_indirections(&structure_, &descriptor_);
    }
  }
  DecodedRecord(const DecodedRecord&) = delete;
  DecodedRecord& operator=(const DecodedRecord&) = delete;

  // Returns 0, or the codec's failure.
  cerrno decode(const void* bytes, std::uint32_t length) {
    tried_ = true;
    return bag_decode(bytes, length, &structure_, &descriptor_);
  }
  const Structure* operator->() const { return &structure_; }
  const Structure& operator*() const { return structure_; }

 private:
  const bag_descriptor& descriptor_;
  Structure structure_{};
  bool tried_ = false;
};

}  // namespace ymap

#endif  // YMAP_DATABASE_H_
