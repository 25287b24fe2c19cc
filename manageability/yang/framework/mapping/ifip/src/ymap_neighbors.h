// The OpenConfig neighbors that native entries become, be they configured or learnt: of one
// interface and address there is one.
#ifndef YMAP_NEIGHBORS_H_
#define YMAP_NEIGHBORS_H_

#include "yfw/mapping.h"
#include "ymap_frame.h"
#include "ymap_namespaces.h"
#include "ymap_paths.h"
#include "ymap_read_back.h"

namespace ymap {

// The OpenConfig lists that a native model's neighbors are placed in, as the model makes their
// entries.
struct NeighborLists {
  EntryList interfaces;
  EntryList subinterfaces;
  EntryList neighbors;
};

inline constexpr EntryList kIpv4Neighbors =
    list_by_address(YMAP_NEIGHBOR("ipv4"), "/ipv4/neighbors/neighbor");
inline constexpr EntryList kIpv6Neighbors =
    list_by_address(YMAP_NEIGHBOR("ipv6"), "/ipv6/neighbors/neighbor");

// Finds or makes the OpenConfig neighbor of the native entry being walked, makes it current, and
// sets its path as the trim prefix, which stays: for lists whose hook is `placing`.
//
//   keys     of the neighbor's subinterface
//   address  gives the neighbor's address; asked only where a neighbor is looked for
//
// Returns the framework's result of the last write that is looked at.
template <typename Address>
cerrno place_neighbor(const Call& call, const OpenConfigKeys& keys, const NeighborLists& lists,
                      const Address& address) {
  EntryCursor cursor(call);
  cerrno result = cursor.find_or_add(lists.interfaces, keys.interface.data());
  if (result == YMAP_OK) {
    result = cursor.find_or_add(lists.subinterfaces, keys.index.data());
  }
  if (result == YMAP_OK) {
    const char* key = cursor.looks_for(lists.neighbors) ? address() : nullptr;
    result = cursor.find_or_add(lists.neighbors, key, current_slot(call));
    yfw_map_copy_trim_path_list_ctx(call.ctx, lists.neighbors.path);
  }
  return result;
}

// The same for a native entry of ARP.
//
//   list       path of the native list, without keys
//   interface  name of its leaf with the native name of the interface
//
// Returns YMAP_ERR_NO_KEYS, with nothing made current, for an entry without interface or address.
cerrno place_ipv4_neighbor(const Call& call, const char* list, const char* interface);

}  // namespace ymap

#endif  // YMAP_NEIGHBORS_H_
