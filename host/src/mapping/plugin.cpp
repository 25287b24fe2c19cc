#include "mapping/plugin.h"

#include <dlfcn.h>

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "io/text.h"
#include "ocifip/contract_version.h"
#include "ocifip/host.h"
#include "records/registry.h"
#include "yfw/text.h"
#include "yfw/version.h"

namespace ocifip {
namespace {

#define OCIFIP_SUBINTERFACE_ENTRY(level) \
  "ymap_ox_ocifip_openconfigifip_augment_" level "_subinterface"
#define OCIFIP_ROUTED_VLAN_ENTRY(level) \
  "ymap_ox_ocifip_openconfigifip_augment_" level "_routed_vlan"

// Of a model that a plug-in may leave out.
constexpr const char* kIpv6ExtensionEntry = "ymap_ox_ocifip_openconfigifipext_augment_lvla_ipv6";

// In the order in which an interface-configuration entry is handed to them.
constexpr const char* kInterfaceReadBacks[] = {
    "ymap_xo_ocifip_halvaneombrixifmgrcfg_lvla_interfaceconfigurations_interfaceconfiguration",
    "ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvla_interface_configuration",
    "ymap_xo_ocifip_halvaneombrixipv4iocfg_augment_lvlb_interface_configuration",
    "ymap_xo_ocifip_halvaneombrixipv6macfg_augment_lvla_interface_configuration",
    "ymap_xo_ocifip_halvaneombrixipv4arpcfg_augment_lvla_interface_configuration",
    "ymap_xo_ocifip_halvaneombrixipv6ndcfg_augment_lvla_interface_configuration",
};

// Native trees without a registration record, by the module and the tag of their top.
struct NamedTree {
  const char* module_namespace;
  const char* tag;
  const char* symbol;
};

constexpr NamedTree kNamedTrees[] = {
    {"urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg", "global-interface-configuration",
     "ymap_xo_ocifip_halvaneombrixifmgrcfg_lvla_globalinterfaceconfiguration"},
    {"urn:halvane:yang:Halvane-Ombrix-ipv4-io-oper", "ipv4-network",
     "ymap_xo_ocifip_halvaneombrixipv4iooper_lvla_ipv4network"},
    {"urn:halvane:yang:Halvane-Ombrix-ipv4-arp-cfg", "arp-redundancy",
     "ymap_xo_ocifip_halvaneombrixipv4arpcfg_lvla_arpredundancy"},
    {"urn:halvane:yang:Halvane-Ombrix-ipv4-arp-oper", "arp-gmp",
     "ymap_xo_ocifip_halvaneombrixipv4arpoper_lvla_arpgmp"},
};

// The private summaries are the trees of the address managers' own tops.
bool is_summary(const yfw_map_reg_record& record) {
  const std::string_view tag = record.native_tag;
  return tag == "ocifipv4ma" || tag == "ocifipv6ma";
}

// The plug-in's undefined symbols are this library's. They are found when it is global, which it
// may not be in a process that loaded it by itself.
void make_host_global() {
  Dl_info host{};
  if (dladdr(reinterpret_cast<void*>(&yfw_strdup), &host) != 0 && host.dli_fname != nullptr) {
    // The handle is kept: the host outlives every plug-in.
    dlopen(host.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
  }
}

// A plain file name is one in the current folder, not one that the loader searches for.
std::string path_of(const std::string& file) {
  std::error_code error;
  return std::filesystem::exists(file, error) ? std::filesystem::absolute(file).string() : file;
}

bool is_folder(const std::string& file) {
  std::error_code error;
  return std::filesystem::is_directory(file, error);
}

[[noreturn]] void fail(const std::string& file, const std::string& reason) {
  throw load_error("plug-in", file, reason);
}

// What the loader says last, without the name of the library that it was given.
std::string loader_error(const std::string& path) {
  const char* error = dlerror();
  const std::string reason = error == nullptr ? "unknown reason" : error;
  const bool is_named = reason.starts_with(path + ": ");
  return in_one_line(is_named ? reason.substr(path.size() + 2) : reason);
}

// A contract version as users see it, "1.0".
std::string version_text(std::uint32_t version) {
  return std::to_string(version / 1000) + '.' + std::to_string(version % 1000);
}

}  // namespace

std::string contract_version() { return version_text(YFW_CONTRACT_VERSION); }

namespace {

// What a plug-in tells of itself. Nothing else of it is called before it is known to fit.
std::string check_version(void* library, const std::string& file) {
  const auto contract = reinterpret_cast<decltype(&yfw_map_contract_version)>(
      dlsym(library, "yfw_map_contract_version"));
  const auto own =
      reinterpret_cast<decltype(&yfw_map_plugin_version)>(dlsym(library, "yfw_map_plugin_version"));
  const std::string offered = "this host offers " + contract_version();
  if (contract == nullptr || own == nullptr) {
    fail(file, "it does not say which version of the contract it was built for; " + offered);
  }
  if (!YFW_CONTRACT_FITS(YFW_CONTRACT_VERSION, contract())) {
    fail(file,
         "it was built for version " + version_text(contract()) + " of the contract; " + offered);
  }
  return std::string(own()) + " for contract " + version_text(contract());
}

}  // namespace

std::vector<yfw_map_leaf_callback*> PluginEntries::parts() {
  std::vector<yfw_map_leaf_callback*> callbacks = {
      &augments.subinterface_ipv4, &augments.subinterface_ipv6, &augments.routed_vlan_ipv4,
      &augments.routed_vlan_ipv6};
  if (augments.subinterface_ipv6_extension != nullptr) {
    callbacks.push_back(&augments.subinterface_ipv6_extension);
  }
  for (yfw_map_leaf_callback& callback : read_back.interface_configuration) {
    callbacks.push_back(&callback);
  }
  for (auto* trees : {&read_back.trees, &read_back.summaries}) {
    for (NativeTree& tree : *trees) {
      callbacks.push_back(&tree.enter);
    }
  }
  return callbacks;
}

void Plugin::Close::operator()(void* library) const { dlclose(library); }

Plugin::Plugin(const std::string& file) {
  make_host_global();
  if (is_folder(file)) fail(file, "that is a folder, not a plug-in");
  const auto path = path_of(file);
  library_.reset(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (library_ == nullptr) fail(file, loader_error(path));
  version_ = check_version(library_.get(), file);
  entries_.augments.subinterface_ipv4 = find(file, OCIFIP_SUBINTERFACE_ENTRY("lvla"));
  entries_.augments.subinterface_ipv6 = find(file, OCIFIP_SUBINTERFACE_ENTRY("lvlb"));
  entries_.augments.routed_vlan_ipv4 = find(file, OCIFIP_ROUTED_VLAN_ENTRY("lvla"));
  entries_.augments.routed_vlan_ipv6 = find(file, OCIFIP_ROUTED_VLAN_ENTRY("lvlb"));
  entries_.augments.subinterface_ipv6_extension = find_optional(kIpv6ExtensionEntry);
  for (const char* symbol : kInterfaceReadBacks) {
    entries_.read_back.interface_configuration.push_back(find(file, symbol));
  }
  for (const NamedTree& tree : kNamedTrees) {
    entries_.read_back.trees.push_back({tree.module_namespace, tree.tag, find(file, tree.symbol)});
  }
  registrations_ = load_registrations(library_.get(), file);
  entries_.openconfig = openconfig_entry(registrations_, file);
  for (const auto& [function, record] : registrations_) {
    auto& trees = is_summary(record) ? entries_.read_back.summaries : entries_.read_back.trees;
    trees.push_back({record.native_namespace, record.native_tag, record.to_openconfig});
  }
  load_records(library_.get(), file);
}

// The plug-in may hold connections beyond a request.
Plugin::~Plugin() {
  for (const char* hook : {"yfw_map_oc_dhcp_sysdb_unbind", "yfw_map_oc_ipv6_sysdb_unbind"}) {
    if (void* found = dlsym(library_.get(), hook); found != nullptr) {
      reinterpret_cast<void (*)()>(found)();
    }
  }
}

yfw_map_leaf_callback Plugin::find(const std::string& file, const char* symbol) const {
  const yfw_map_leaf_callback found = find_optional(symbol);
  if (found == nullptr) {
    fail(file, std::string("it does not export ") + symbol);
  }
  return found;
}

yfw_map_leaf_callback Plugin::find_optional(const char* symbol) const {
  return reinterpret_cast<yfw_map_leaf_callback>(dlsym(library_.get(), symbol));
}

}  // namespace ocifip
