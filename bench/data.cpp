#include "data.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <string_view>

namespace ocifip::bench {
namespace {

// Puts texts in the places of the `$` of another, in turn.
std::string filled(std::string_view form, std::initializer_list<std::string_view> texts) {
  std::string result;
  for (const std::string_view text : texts) {
    const std::size_t place = form.find('$');
    result.append(form.substr(0, place)).append(text);
    form.remove_prefix(place + 1);
  }
  return result.append(form);
}

// Elements, one a number from first to last, with commas between them.
template <class Element>
std::string elements(std::size_t first, std::size_t last, const Element& element) {
  std::string text;
  for (std::size_t i = first; i < last; ++i) {
    text.append(i == first ? "" : ",").append(element(i));
  }
  return text;
}

std::string address(std::size_t subinterface, std::size_t ordinal) {
  const std::size_t number = 4 * subinterface + ordinal + 1;
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "10.%zu.%zu.%zu", number >> 16 & 0xff, number >> 8 & 0xff,
                number & 0xff);
  return text.data();
}

std::string interface_name(const Layout& layout, std::size_t subinterface) {
  return "Eth" + std::to_string(subinterface / layout.per_interface);
}

std::string index_of(const Layout& layout, std::size_t subinterface) {
  return std::to_string(subinterface % layout.per_interface);
}

std::string native_name(const Layout& layout, std::size_t subinterface) {
  const std::string index = index_of(layout, subinterface);
  return interface_name(layout, subinterface) + (index == "0" ? "" : "." + index);
}

// An OpenConfig subinterface with the addresses from first to last; `config` follows them.
std::string openconfig_entry(const Layout& layout, std::size_t subinterface, std::size_t first,
                             std::size_t last, std::string_view config) {
  const auto entry = [&](std::size_t ordinal) {
    const std::string ip = address(subinterface, ordinal);
    return filled(R"({"ip":"$","config":{"ip":"$","prefix-length":24}})", {ip, ip});
  };
  return filled(R"({"index":$,"openconfig-if-ip:ipv4":{"addresses":{"address":[$]}$}})",
                {index_of(layout, subinterface), elements(first, last, entry), config});
}

// One with an address of each family, and beside the IPv4 one a VRRP group and a neighbor.
std::string whole_openconfig_entry(const Layout& layout, std::size_t subinterface) {
  const std::string ip = address(subinterface, 0);
  const std::string ipv6 = "2001:db8:" + std::to_string(subinterface % 10000) + ":" +
                           std::to_string(subinterface / 10000) + "::1";
  return filled(
      R"({"index":$,"openconfig-if-ip:ipv4":{"addresses":{"address":[{"ip":"$",)"
      R"("config":{"ip":"$","prefix-length":24},"vrrp":{"vrrp-group":[{"virtual-router-id":7,)"
      R"("config":{"virtual-router-id":7,"virtual-address":["$","$"],"priority":110}}]}}]},)"
      R"("neighbors":{"neighbor":[{"ip":"$","config":{"ip":"$","link-layer-address":)"
      R"("02:00:5e:00:53:01"}}]}},"openconfig-if-ip:ipv6":{"addresses":{"address":[{"ip":"$",)"
      R"("config":{"ip":"$","prefix-length":64}}]},"neighbors":{"neighbor":[{"ip":"$2",)"
      R"("config":{"ip":"$2","link-layer-address":"02:00:5e:00:53:02"}}]}}})",
      {index_of(layout, subinterface), ip, ip, address(subinterface, 1), address(subinterface, 2),
       address(subinterface, 3), address(subinterface, 3), ipv6, ipv6, ipv6, ipv6});
}

std::string openconfig_interface(const std::string& name, const std::string& subinterfaces) {
  return filled(R"({"name":"$","subinterfaces":{"subinterface":[$]}})", {name, subinterfaces});
}

std::string openconfig_document(const std::string& interfaces) {
  return filled(R"({"openconfig-interfaces:interfaces":{"interface":[$]}})", {interfaces});
}

// All interfaces with what `subinterface(number)` gives of each subinterface.
template <class Subinterface>
std::string openconfig_interfaces(const Layout& layout, const Subinterface& subinterface) {
  const auto interface = [&](std::size_t i) {
    const std::size_t first = i * layout.per_interface;
    const std::size_t last = std::min(first + layout.per_interface, layout.subinterfaces);
    return openconfig_interface(interface_name(layout, first), elements(first, last, subinterface));
  };
  const std::size_t interfaces =
      (layout.subinterfaces + layout.per_interface - 1) / layout.per_interface;
  return openconfig_document(elements(0, interfaces, interface));
}

}  // namespace

std::string openconfig_json(const Layout& layout) {
  return openconfig_interfaces(layout, [&](std::size_t i) {
    return openconfig_entry(layout, i, 0, 2, R"(,"config":{"mtu":1400})");
  });
}

std::string whole_openconfig_json(const Layout& layout) {
  return openconfig_interfaces(layout,
                               [&](std::size_t i) { return whole_openconfig_entry(layout, i); });
}

std::string native_json(const Layout& layout) {
  const auto entry = [&](std::size_t i) {
    return filled(R"({"active":"act","interface-name":"$",)"
                  R"("Halvane-Ombrix-ipv4-io-cfg:ipv4-network":{"addresses":{"secondaries":)"
                  R"({"secondary":[{"address":"$","netmask":"255.255.255.0"}]},)"
                  R"("primary":{"address":"$","netmask":"255.255.255.0"}},"mtu":1400}})",
                  {native_name(layout, i), address(i, 1), address(i, 0)});
  };
  return filled(
      R"({"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{"interface-configuration":[$]}})",
      {elements(0, layout.subinterfaces, entry)});
}

std::string device_json(const Layout& layout, const std::string& native) {
  const auto interface = [&](std::size_t i) {
    return filled(R"({"name":"$"})", {native_name(layout, i)});
  };
  return filled(R"({"node":"node0_1","interfaces":[$],"native":$})",
                {elements(0, layout.subinterfaces, interface), native});
}

std::string small_edit_json(const Layout& layout, std::size_t subinterface) {
  return openconfig_document(openconfig_interface(
      interface_name(layout, subinterface), openconfig_entry(layout, subinterface, 2, 3, "")));
}

}  // namespace ocifip::bench
