#include "mapping/registrations.h"

#include <dlfcn.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "io/text.h"
#include "yfw/interfaces_mapping.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

// In the order in which the native trees are read back.
constexpr const char* kFunctions[] = {
    "yfw_map_reg_ifip_conf",        "yfw_map_reg_ifip_conf_ipv6",   "yfw_map_reg_ifip_oper_ipv6_nd",
    "yfw_map_reg_ifip_ma_ipv6",     "yfw_map_reg_ifip_origin_ipv4", "yfw_map_reg_ocifip_vrrp_conf",
    "yfw_map_reg_ocifip_vrrp_oper", "yfw_map_reg_ocifip_v6ma_oper", "yfw_map_reg_ocifip_v4ma_oper",
};

constexpr std::string_view kOpenConfigNamespace = "http://openconfig.net/yang/interfaces";
constexpr std::string_view kOpenConfigTag = "interfaces";

using RegistrationFunction = void (*)(yfw_map_reg_record*);

[[noreturn]] void fail(const std::string& file, const std::string& reason) {
  throw load_error("plug-in", file, reason);
}

bool is_complete(const yfw_map_reg_record& record) {
  return record.to_native != nullptr && record.to_openconfig != nullptr &&
         record.openconfig_namespace == kOpenConfigNamespace &&
         record.openconfig_tag == kOpenConfigTag;
}

// A callback may be another library's; the name is empty for one that is not exported.
std::string symbol_of(yfw_map_leaf_callback callback) {
  Dl_info symbol{};
  const bool is_known = dladdr(reinterpret_cast<void*>(callback), &symbol) != 0;
  return is_known && symbol.dli_sname != nullptr ? symbol.dli_sname : "";
}

}  // namespace

std::vector<RegistrationRecord> load_registrations(void* library, const std::string& file) {
  std::vector<RegistrationRecord> records;
  for (const char* function : kFunctions) {
    const auto fill = reinterpret_cast<RegistrationFunction>(dlsym(library, function));
    if (fill == nullptr) {
      continue;
    }
    RegistrationRecord& added = records.emplace_back(RegistrationRecord{function, {}});
    fill(&added.record);
    if (!is_complete(added.record)) {
      fail(file, std::string(function) + " does not pair a native tree with interfaces");
    }
  }
  if (records.empty()) {
    fail(file, "it registers no mapping");
  }
  return records;
}

yfw_map_leaf_callback openconfig_entry(const std::vector<RegistrationRecord>& records,
                                       const std::string& file) {
  const yfw_map_leaf_callback sibling = ymap_ox_ocif_openconfiginterfaces_lvla_interfaces;
  const auto is_sibling = [sibling](const RegistrationRecord& registered) {
    return registered.record.to_native == sibling;
  };
  if (std::none_of(records.begin(), records.end(), is_sibling)) {
    fail(file,
         "it registers no mapping that OpenConfig requests reach by "
         "ymap_ox_ocif_openconfiginterfaces_lvla_interfaces");
  }
  return sibling;
}

std::string print_registrations(const std::string& version,
                                const std::vector<RegistrationRecord>& records, Format format) {
  if (format != Format::kJson && format != Format::kTree) {
    throw InputError("registrations are shown as json or tree");
  }
  Json list = Json::array();
  std::string tree = "plug-in " + version + '\n';
  for (const auto& [function, record] : records) {
    const std::pair<const char*, std::string> fields[] = {
        {"function", function},
        {"tree-name", record.tree_name},
        {"native-namespace", record.native_namespace},
        {"native-tag", record.native_tag},
        {"openconfig-namespace", record.openconfig_namespace},
        {"openconfig-tag", record.openconfig_tag},
        {"to-native", symbol_of(record.to_native)},
        {"to-openconfig", symbol_of(record.to_openconfig)},
    };
    Json object;
    for (const auto& [name, value] : fields) {
      object[name] = value;
      const std::string line = std::string(name) + " = " + Json(value).dump() + '\n';
      tree += object.size() == 1 ? std::string(function) + '\n' : "  " + line;
    }
    list.push_back(std::move(object));
  }
  return format == Format::kJson ? list.dump(2) + '\n' : tree;
}

}  // namespace ocifip
