// What a program for one job alone would take: it maps a replace of subinterfaces with IPv4
// addresses and an MTU to what `ocifip edit --op replace` prints of it, byte for byte, and knows
// neither models nor checks. It also reads a JSON file and looks at each value.
#include <simdjson.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using simdjson::ondemand::document;
using simdjson::ondemand::object;
using simdjson::ondemand::value;

// --- mapping -------------------------------------------------------------------------------------

struct Address {
  std::string_view ip;
  std::uint64_t prefix_length;
};

// A subinterface's configuration. Its addresses are kept apart: it serves one subinterface after
// the other.
struct Subinterface {
  std::uint64_t index = 0;
  std::uint64_t mtu = 0;  // 0: none
  std::vector<Address> addresses = {};
};

constexpr std::string_view kHead = R"({
  "Halvane-Ombrix-ifmgr-cfg:interface-configurations": {
    "interface-configuration": [)";
constexpr std::string_view kTail = R"(
    ]
  }
}
)";

std::string netmask(std::uint64_t prefix_length) {
  const std::uint64_t mask = ~std::uint64_t{0} << (32 - prefix_length);
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%u.%u.%u.%u", static_cast<unsigned>(mask >> 24 & 0xff),
                static_cast<unsigned>(mask >> 16 & 0xff), static_cast<unsigned>(mask >> 8 & 0xff),
                static_cast<unsigned>(mask & 0xff));
  return text.data();
}

const std::string& netmask_of(std::uint64_t prefix_length) {
  static const auto kNetmasks = [] {
    std::array<std::string, 33> all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      all[i] = netmask(i);
    }
    return all;
  }();
  return kNetmasks.at(prefix_length);
}

void append(std::string& out, const auto&... texts) { (out.append(texts), ...); }

void append_secondaries(std::string& out, const std::vector<Address>& addresses) {
  out.append(R"(
            "secondaries": {
              "secondary": [)");
  for (std::size_t i = 1; i < addresses.size(); ++i) {
    append(out, i == 1 ? "" : ",", R"(
                {
                  "@": {
                    "ietf-netconf:operation": "replace"
                  },
                  "address": ")",
           addresses[i].ip, R"(",
                  "netmask": ")",
           netmask_of(addresses[i].prefix_length), R"(",
                  "@netmask": {
                    "ietf-netconf:operation": "replace"
                  }
                })");
  }
  out.append(R"(
              ]
            },)");
}

void append_primary(std::string& out, const Address& address) {
  append(out, R"(
            "primary": {
              "@": {
                "ietf-netconf:operation": "replace"
              },
              "address": ")",
         address.ip, R"(",
              "@address": {
                "ietf-netconf:operation": "replace"
              },
              "netmask": ")",
         netmask_of(address.prefix_length), R"(",
              "@netmask": {
                "ietf-netconf:operation": "replace"
              }
            })");
}

void append_subinterface(std::string& out, std::string_view interface,
                         const Subinterface& subinterface) {
  append(out, R"(
      {
        "active": "act",
        "interface-name": ")",
         interface);
  if (subinterface.index != 0) {
    append(out, ".", std::to_string(subinterface.index));
  }
  out.append(R"(",
        "Halvane-Ombrix-ipv4-io-cfg:ipv4-network": {
          "addresses": {)");
  if (subinterface.addresses.size() > 1) {
    append_secondaries(out, subinterface.addresses);
  }
  append_primary(out, subinterface.addresses.at(0));
  out.append(R"(
          })");
  if (subinterface.mtu != 0) {
    append(out, R"(,
          "mtu": )",
           std::to_string(subinterface.mtu), R"(,
          "@mtu": {
            "ietf-netconf:operation": "replace"
          })");
  }
  out.append(R"(
        }
      })");
}

// Reads a subinterface into one that served another before.
void read_subinterface(object from, Subinterface& subinterface) {
  subinterface.index = from["index"];
  object ipv4 = from["openconfig-if-ip:ipv4"];
  subinterface.addresses.clear();
  for (object address : ipv4["addresses"]["address"]) {
    const std::string_view ip = address["ip"];
    subinterface.addresses.push_back({ip, address["config"]["prefix-length"]});
  }
  if (ipv4["config"]["mtu"].get(subinterface.mtu) != simdjson::SUCCESS) {
    subinterface.mtu = 0;
  }
}

// Texts for standard output, some at a time.
class Output {
 public:
  std::string text;

  // Writes the text if there is enough of it, or `all` that there is.
  void write(bool all) {
    if (!all && text.size() < kEnough) {
      return;
    }
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
      throw std::runtime_error("cannot write");
    }
    text.clear();
  }

 private:
  static constexpr std::size_t kEnough = 1 << 16;
};

void map(document& request) {
  Output out{std::string(kHead)};
  Subinterface subinterface;
  const char* before = "";
  for (object interface : request["openconfig-interfaces:interfaces"]["interface"]) {
    const std::string_view name = interface["name"];
    for (object entry : interface["subinterfaces"]["subinterface"]) {
      read_subinterface(entry, subinterface);
      out.text.append(before);
      append_subinterface(out.text, name, subinterface);
      out.write(false);
      before = ",";
    }
  }
  out.text.append(kTail);
  out.write(true);
}

// --- reading -------------------------------------------------------------------------------------

// What has been read: it is printed, so that nothing of the reading can be left out.
struct Values {
  std::size_t count = 0;
  std::size_t size = 0;  // of names and texts, bytes

  void read(value from);

 private:
  void read_members(object from);
};

void Values::read_members(object from) {
  for (auto member : from) {
    size += std::string_view(member.unescaped_key()).size();
    read(member.value());
  }
}

void Values::read(value from) {
  ++count;
  switch (from.type()) {
    case simdjson::ondemand::json_type::object:
      read_members(from);
      break;
    case simdjson::ondemand::json_type::array:
      for (value element : from.get_array()) {
        read(element);
      }
      break;
    case simdjson::ondemand::json_type::string:
      size += std::string_view(from).size();
      break;
    case simdjson::ondemand::json_type::number:
      size += static_cast<std::size_t>(double(from) != 0);
      break;
    case simdjson::ondemand::json_type::boolean:
      size += static_cast<std::size_t>(bool(from));
      break;
    case simdjson::ondemand::json_type::null:
      size += static_cast<std::size_t>(bool(from.is_null()));
      break;
  }
}

void read(document& file) {
  Values values;
  values.read(value(file));
  std::printf("%zu values, %zu bytes\n", values.count, values.size);
}

}  // namespace

int main(int count, char** arguments) {
  const std::string_view job = count == 3 ? arguments[1] : "";
  if (job != "edit" && job != "read") {
    std::cerr << "usage: " << arguments[0] << " edit|read FILE\n";
    return 2;
  }
  try {
    const simdjson::padded_string text = simdjson::padded_string::load(arguments[2]);
    simdjson::ondemand::parser parser;
    document parsed = parser.iterate(text);
    job == "edit" ? map(parsed) : read(parsed);
  } catch (const std::exception& error) {
    std::cerr << arguments[0] << ": " << error.what() << '\n';
    return 1;
  }
  return 0;
}
