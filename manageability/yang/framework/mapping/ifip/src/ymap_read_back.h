// What the read-back callbacks share: what the request wants to see, the OpenConfig entries that
// native data belong to, and the writing of OpenConfig leaves.
#ifndef YMAP_READ_BACK_H_
#define YMAP_READ_BACK_H_

#include <array>
#include <cstdint>

#include "yfw/context.h"
#include "yfw/mapping.h"
#include "ymap_frame.h"
#include "ymap_namespaces.h"
#include "ymap_paths.h"

namespace ymap {

inline constexpr const char* kNativeInterface = YMAP_NATIVE_INTERFACE;
inline constexpr const char* kInterface = YMAP_INTERFACE;
inline constexpr const char* kSubinterface = YMAP_SUBINTERFACE;

// --- what the request wants ----------------------------------------------------------------------

// Whether the answer is to hold configuration: unless it is filtered for operational data.
[[nodiscard]] bool wants_config(const yfw_map_ctx* ctx);

// Whether the answer is to hold operational state.
[[nodiscard]] bool wants_state(const yfw_map_ctx* ctx);

// --- names ---------------------------------------------------------------------------------------

// The OpenConfig keys in a native interface name: what stands before its first dot names the
// interface, what follows it is the index of the subinterface.
struct OpenConfigKeys {
  std::array<char, 201> interface {};
  std::array<char, 201> index{'0'};  // "0" for a name without a dot

  // Whether there is an interface: not in an empty name, nor in one that begins with a dot.
  [[nodiscard]] bool name_an_interface() const { return interface[0] != '\0'; }
};
// Null is taken for the empty name.
[[nodiscard]] OpenConfigKeys split_interface_name(const char* name);

// Whether a native interface name has a dot: the framework makes the subinterface of such a name
// current when it enters the interface's configuration.
[[nodiscard]] bool has_dot(const char* name);

// Name of the native interface being mapped; empty without a request state.
[[nodiscard]] const char* current_interface_name(const yfw_map_ctx* ctx);

// A key, or any other leaf, of the list entry or container being walked.
struct EntryKey {
  cerrno result;      // of the framework's lookup
  const char* value;  // null when the lookup failed or there is no such leaf
};

//   list_path  the path of the list or container, without keys
[[nodiscard]] EntryKey entry_key(const Call& call, const char* list_path, const char* key);

// Value of a leaf of the native list entry being walked, or null when it has none or cannot be
// looked up.
//
//   list_path  the list's path without keys
[[nodiscard]] const char* entry_leaf(const Call& call, const char* list_path, const char* leaf);

// Whether a native interface name is a tunnel's: any that begins with "tunnel-ip" counts, by
// design. Null is none.
[[nodiscard]] bool is_tunnel_name(const char* name);

// Whether the interface-configuration entry being walked is a tunnel's.
[[nodiscard]] bool is_tunnel(const Call& call);

// --- OpenConfig entries --------------------------------------------------------------------------

// A list of OpenConfig entries: where an entry is looked for, and how one is made. Read-backs
// differ in the latter.
struct EntryList {
  const char* path;                   // where a new entry is written
  const char* below;                  // where it is looked for: the path below the entry above
  const char* key;                    // name of its key leaf
  const char* key_path;               // where a new entry's key is written; null: left to its leaf
  const char* module_namespace;       // of what is written
  const char* searched_namespace;     // of the list that is searched; null: any
  const char* trim_prefix;            // set while an entry and its key are written; null: none
  std::uint32_t flags;                // of the entry, enum yfw_map_path_flag
  std::uint32_t key_flags;            // of its key
  bool key_create;                    // create flag of the key
  bool looked_for_below_new = false;  // search also below an entry that has just been made
  bool checked = true;                // a new entry or key that cannot be written is a failure
  // Below an entry that was found, a new entry's key is written from the new entry itself on, whose
  // path is the trim prefix then.
  bool key_from_entry_below_found = false;
};

inline constexpr EntryList kInterfaces = {.path = kInterface,
                                          .below = kInterface,
                                          .key = "name",
                                          .key_path = YMAP_INTERFACE "/name",
                                          .module_namespace = kNamespaceInterfaces,
                                          .searched_namespace = kNamespaceInterfaces,
                                          .trim_prefix = nullptr,
                                          .flags = YFW_MAP_PATH_INTERFACE,
                                          .key_flags = YFW_MAP_PATH_PLAIN,
                                          .key_create = true};
inline constexpr EntryList kSubinterfaces = {.path = kSubinterface,
                                             .below = "/subinterfaces/subinterface",
                                             .key = "index",
                                             .key_path = YMAP_SUBINTERFACE "/index",
                                             .module_namespace = kNamespaceInterfaces,
                                             .searched_namespace = nullptr,
                                             .trim_prefix = kInterface,
                                             .flags = YFW_MAP_PATH_SUBINTERFACE,
                                             .key_flags = YFW_MAP_PATH_SUBINTERFACE,
                                             .key_create = false};
// The same with a key that is asked for as a new one.
inline constexpr EntryList kSubinterfacesWithNewKeys = [] {
  EntryList list = kSubinterfaces;
  list.key_create = true;
  return list;
}();

// A list of openconfig-if-ip below a subinterface, keyed by an address. The key of a new entry
// comes with its leaf.
//
//   path   of the list
//   below  the same from the subinterface on
constexpr EntryList list_by_address(const char* path, const char* below) {
  return {.path = path,
          .below = below,
          .key = "ip",
          .key_path = nullptr,
          .module_namespace = kNamespaceIfIp,
          .searched_namespace = kNamespaceIfIp,
          .trim_prefix = kSubinterface,
          .flags = YFW_MAP_PATH_SUBINTERFACE,
          .key_flags = YFW_MAP_PATH_PLAIN,
          .key_create = false};
}
inline constexpr EntryList kIpv6Addresses =
    list_by_address(YMAP_ADDRESS("ipv6"), "/ipv6/addresses/address");

// A way through the output's entries, from its root down.
class EntryCursor {
 public:
  explicit EntryCursor(const Call& call) : call_(call), node_(call.out) {}

  // Goes to the entry with a key in a list below. Stays, and returns the search's result, when
  // there is none; a null key is no entry's.
  cerrno find(const EntryList& list, const char* key);

  // Goes to the entry with a key in a list below, or makes it. Below a new entry nothing is looked
  // for, unless the list asks for it.
  //
  //   slot    where to store the entry, or null
  //   source  the node whose operation a new entry takes, or null
  //
  // Returns the framework's result of the last write.
  cerrno find_or_add(const EntryList& list, const char* key, Node** slot = nullptr,
                     const Node* source = nullptr);

  // Whether an entry of a list below would be looked for before one is made.
  [[nodiscard]] bool looks_for(const EntryList& list) const {
    return !is_new_ || list.looked_for_below_new;
  }

  // The entry that it is at.
  [[nodiscard]] Node* node() const { return node_; }
  // Whether that entry has been made on the way.
  [[nodiscard]] bool is_new() const { return is_new_; }

 private:
  cerrno add(const EntryList& list, const char* key, Node** slot, const Node* source);
  cerrno add_entry(const EntryList& list, Node** slot, const Node* source);
  cerrno add_key(const EntryList& list, const char* key, Node* base);

  const Call& call_;
  Node* node_;
  bool is_new_ = false;
};

// The slot that makes an entry current: what is written with YFW_MAP_PATH_CURRENT goes under it.
// Null without a request state.
[[nodiscard]] Node** current_slot(const Call& call);

// Finds or makes the interface and the subinterface with the keys, and makes the latter current.
// Returns the framework's result of the last write.
cerrno select_subinterface(const Call& call, const OpenConfigKeys& keys);

// The same for the native interface being mapped, unless its name has a dot: the framework has made
// the subinterface of such a name current.
cerrno select_current_subinterface(const Call& call);

// --- leaves --------------------------------------------------------------------------------------

// Writes a path of openconfig-if-ip under the current entries.
cerrno add_openconfig(const Call& call, const char* path, const char* value, bool create = false);

// Writes the input's value in upper case; the input keeps its own. Returns YMAP_ERR_NO_MEMORY when
// there is no room for a copy.
cerrno add_in_upper_case(const Call& call, const char* path);

// Writes the value of a key to the key's path and to that of its copy. Returns the first failure.
cerrno add_key_and_copy(const Call& call, const char* key_path, const char* copy_path);

// A leaf that OpenConfig has as configuration and as state; null where it has no twin.
struct Twins {
  const char* config;
  const char* state;
};

#define YMAP_TWINS_AT(stem, leaf) \
  ymap::Twins { stem "/config/" leaf, stem "/state/" leaf }

// Writes those of the twins that the request wants. Returns the first failure.
//
//   create  create flag: further values of a leaf-list
cerrno add_twins(const Call& call, const Twins& paths, const char* value, bool create = false);

// Writes the key of an entry, and those of its twins that the request wants. Returns the first
// failure.
cerrno add_key_and_twins(const Call& call, const char* key_path, const Twins& paths,
                         const char* value);

// The same for a leaf of an interface's configuration that may be the first to be written of its
// subinterface, which is found or made, and made current, before.
cerrno add_placed_twins(const Call& call, const Twins& paths, const char* value);

}  // namespace ymap

#endif  // YMAP_READ_BACK_H_
