// What a host does with the plug-in besides mapping requests, and without a device file.
#include "ocifip/host.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "redirected_calls.h"
#include "yfw/text.h"

namespace {

using namespace ocifip;

std::string unloaded;  // the hooks that were called

template <char kHook>
void note_unload() {
  unloaded += kHook;
}

// Finds hooks that note their calls in place of the plug-in's.
void* find_symbol(void* library, const char* name) {
  const std::string_view symbol = name;
  if (symbol == "yfw_map_oc_dhcp_sysdb_unbind") return reinterpret_cast<void*>(note_unload<'4'>);
  if (symbol == "yfw_map_oc_ipv6_sysdb_unbind") return reinterpret_cast<void*>(note_unload<'6'>);
  return dlsym(library, name);
}

std::uint32_t fail_to_register() { return 0x40800a00; }

// A library with one of its calls redirected.
RedirectedCalls redirect(const char* library, std::string_view function, void* other) {
  EXPECT_NE(dlopen(library, RTLD_LAZY), nullptr) << dlerror();
  return {library, [=](std::string_view symbol, void* address) {
            return symbol == function ? other : address;
          }};
}

TEST(Plugin, IsToldWhenItIsUnloaded) {
  Dl_info host{};
  ASSERT_NE(dladdr(reinterpret_cast<void*>(&yfw_strdup), &host), 0);
  const auto calls = redirect(host.dli_fname, "dlsym", reinterpret_cast<void*>(find_symbol));
  {
    const Host unused({OCIFIP_PLUGIN, OCIFIP_MODELS_DIR});
    EXPECT_EQ(unloaded, "");
  }
  EXPECT_EQ(unloaded, "46");
}

std::string reason(bool saves) {
  try {
    Host host({OCIFIP_PLUGIN, OCIFIP_MODELS_DIR});
    host.apply({.edit = {}, .save = saves}, Format::kTree);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

TEST(Plugin, IsTurnedDownWhenItsRecordsCannotBeRegistered) {
  const auto calls =
      redirect(OCIFIP_PLUGIN, "bag_register", reinterpret_cast<void*>(fail_to_register));
  EXPECT_TRUE(reason(false).ends_with(" fails with 0x40800a00")) << reason(false);
}

TEST(Host, SavesToADeviceFileAlone) {
  EXPECT_EQ(reason(true), "nothing to save to: no device file was given");
}

}  // namespace
