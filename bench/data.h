// The data of the benchmarks, in any size: each subinterface has two IPv4 addresses and an MTU, or
// something of every model that is mapped.
#ifndef OCIFIP_BENCH_DATA_H_
#define OCIFIP_BENCH_DATA_H_

#include <cstddef>
#include <string>

namespace ocifip::bench {

// How many subinterfaces there are, and how they are spread over interfaces.
struct Layout {
  std::size_t subinterfaces;
  std::size_t per_interface = 1000;
};

// An OpenConfig document with all of them, as JSON: the content of an edit.
std::string openconfig_json(const Layout& layout);

// Native configuration of all of them, as JSON: what the edit makes.
std::string native_json(const Layout& layout);

// An OpenConfig document with an address and a neighbor of each family, and a VRRP group.
std::string whole_openconfig_json(const Layout& layout);

// A device file of a device with all of them, and with native data as JSON.
std::string device_json(const Layout& layout, const std::string& native);

// An OpenConfig document that gives one subinterface, by its number, one more address.
std::string small_edit_json(const Layout& layout, std::size_t subinterface);

}  // namespace ocifip::bench

#endif  // OCIFIP_BENCH_DATA_H_
