// What the read-back callbacks share: what the request wants to see, the OpenConfig entries that
// native data belong to, and the writing of OpenConfig leaves.
#ifndef YMAP_READ_BACK_H_
#define YMAP_READ_BACK_H_

#include <array>
#include <cstdint>

#include "yfw/context.h"
#include "ymap_frame.h"

// The stem of the paths below a subinterface.
#define YMAP_SUBINTERFACE "/interfaces/interface/subinterfaces/subinterface"

namespace ymap {

inline constexpr const char* kNativeInterface = "/interface-configurations/interface-configuration";
inline constexpr const char* kInterface = "/interfaces/interface";
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
};
[[nodiscard]] OpenConfigKeys split_interface_name(const char* name);

// Name of the native interface being mapped; empty without a request state.
[[nodiscard]] const char* current_interface_name(const yfw_map_ctx* ctx);

// A key of the list entry being walked.
struct EntryKey {
  cerrno result;      // of the framework's lookup
  const char* value;  // null when the lookup failed or the entry has no such key
};

//   list_path  the list's path without keys
[[nodiscard]] EntryKey entry_key(const Call& call, const char* list_path, const char* key);

// Value of a leaf of the native list entry being walked, or null when it has none.
//
//   list_path  the list's path without keys
[[nodiscard]] const char* entry_leaf(const Call& call, const char* list_path, const char* leaf);

// Whether a native interface name is a tunnel's: any that begins with "tunnel-ip" counts, by
// design. Null is none.
[[nodiscard]] bool is_tunnel_name(const char* name);

// Whether the interface-configuration entry being walked is a tunnel's.
[[nodiscard]] bool is_tunnel(const Call& call);

// --- OpenConfig entries --------------------------------------------------------------------------

// Create flags of the keys of new entries, in which the read-backs differ.
struct KeyFlags {
  bool name = true;
  bool index = false;
};

// Finds the output's entry of an interface. Returns the search's result, not 0 when there is none.
cerrno find_interface(const Call& call, const char* name, Node*& interface);

// Finds the entry of a subinterface below an interface's. Returns the search's result.
cerrno find_subinterface(const Call& call, Node* interface, const char* index, Node*& subinterface);

// Finds or makes a subinterface of an interface, and makes it current: it stands in the request
// state's slot, under which further writes go. Returns the framework's result of the last write.
cerrno select_subinterface(const Call& call, Node* interface, const char* index,
                           const KeyFlags& keys = {});

// Finds or makes the interface and the subinterface with the keys, and makes the latter current.
cerrno select_subinterface(const Call& call, const OpenConfigKeys& names,
                           const KeyFlags& keys = {});

// The same for the native interface being mapped, unless its name has a dot: the framework has made
// the subinterface of such a name current.
cerrno select_current_subinterface(const Call& call);

// --- leaves --------------------------------------------------------------------------------------

// Writes a path of openconfig-if-ip under the current entries.
cerrno add_openconfig(const Call& call, const char* path, const char* value);

// A leaf that OpenConfig has as configuration and as state; null where it has no twin.
struct Twins {
  const char* config;
  const char* state;
};

// Writes those of the twins that the request wants. Returns the first failure.
cerrno add_twins(const Call& call, const Twins& paths, const char* value);

}  // namespace ymap

#endif  // YMAP_READ_BACK_H_
