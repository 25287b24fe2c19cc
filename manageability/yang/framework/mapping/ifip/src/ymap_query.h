// What a read of OpenConfig state asks of the native models.
#ifndef YMAP_QUERY_H_
#define YMAP_QUERY_H_

#include <array>
#include <cstddef>

#include "yfw_map_ifip_util.h"
#include "ymap_frame.h"
#include "ymap_namespaces.h"

namespace ymap {

// The most steps that lead from the top of a private summary to a leaf.
inline constexpr std::size_t kMaxMirrorSteps = 10;

// A place in one of the private summaries, whose trees mirror OpenConfig's below their top node:
// the steps that lead to its leaves. The framework takes the keys from the request.
struct Mirror {
  const char* module_namespace;
  std::array<const char*, kMaxMirrorSteps> steps;  // from the top node on, each with its "/"; the
                                                   // first null ends them
};

inline constexpr Mirror kIpv4Addresses = {
    kNamespacePrivateV4maOper,
    {"/ocifipv4ma", "/interfaces", "/interface", "/subinterfaces", "/subinterface", "/ipv4",
     "/addresses", "/address", "/state"}};
inline constexpr Mirror kIpv4Counters = {
    kNamespacePrivateV4maOper,
    {"/ocifipv4ma", "/interfaces", "/interface", "/subinterfaces", "/subinterface", "/ipv4",
     "/ipv4-state", "/counters"}};
inline constexpr Mirror kIpv6Counters = {
    kNamespacePrivateV6maOper,
    {"/ocifipv6ma", "/interfaces", "/interface", "/subinterfaces", "/subinterface", "/ipv6",
     "/ipv6-state", "/counters"}};

// Asks for a leaf of a private summary. An edit asks for nothing.
//
//   leaf  its step, as "/in-pkts"
//
// Returns the framework's result.
cerrno query_mirrored(const Call& call, const Mirror& place, const char* leaf);

// Asks for a native path, with the node's value if it has one. An edit asks for nothing.
cerrno query_native(const Call& call, const char* module_namespace, const char* path);

// The same without the value, which the native leaf does not have in that form.
cerrno ask_native(const Call& call, const char* module_namespace, const char* path);

// The name of the node that an interface is on, by which operational entries are keyed; that of the
// local node for an interface that does not exist.
//
//   ifname  native name
//
// Returns 0, or the interface manager's failure.
cerrno node_of_interface(const Call& call, const char* ifname, NodeName& node);

}  // namespace ymap

#endif  // YMAP_QUERY_H_
