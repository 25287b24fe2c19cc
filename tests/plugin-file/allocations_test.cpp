// What the plug-in itself allocates while it registers and while it maps requests. Memory that the
// services allocate which it calls is theirs, the texts of refusals among it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "ocifip/host.h"
#include "redirected_calls.h"
#include "yfw_map_ifip_util.h"

namespace {

using namespace ocifip;

// Sizes of what the plug-in has allocated.
std::vector<std::size_t> allocated;

void* note(void* block, std::size_t size) {
  allocated.push_back(size);
  return block;
}
void* note_malloc(std::size_t size) { return note(std::malloc(size), size); }
void* note_calloc(std::size_t count, std::size_t size) {
  return note(std::calloc(count, size), count * size);
}
void* note_realloc(void* block, std::size_t size) { return note(std::realloc(block, size), size); }
void* note_strdup(const char* text) { return note(strdup(text), std::strlen(text) + 1); }

// The ways in which the plug-in could allocate: nothing of the C++ library is among what it calls,
// which the test of its file sees to.
const std::map<std::string_view, void*> kAllocators = {
    {"malloc", reinterpret_cast<void*>(note_malloc)},
    {"calloc", reinterpret_cast<void*>(note_calloc)},
    {"realloc", reinterpret_cast<void*>(note_realloc)},
    {"strdup", reinterpret_cast<void*>(note_strdup)}};

// The database of an interface's addresses, which the contract gives to each subinterface of an
// edit.
constexpr std::size_t kAddresses = sizeof(ymap::AddressDb);

Source example(const std::string& name) {
  std::ifstream file(std::string(OCIFIP_EXAMPLES_DIR) + "/" + name);
  std::ostringstream text;
  text << file.rdbuf();
  return {name, text.str(), Encoding::kJson};
}

Outcome edit(Host& host, const char* document) {
  EditRequest request;
  request.document = example(document);
  return host.edit(request, Format::kCalls);
}

Outcome remove(Host& host, const std::string& path) {
  EditRequest request;
  request.deletes = {path};
  return host.edit(request, Format::kCalls);
}

Outcome get(Host& host) {
  QueryRequest request;
  request.paths = {"/interfaces"};
  return host.get(request, Format::kCalls);
}

Outcome report(Host& host) {
  return host.report({example("native-ipv4.json"), Content::kAll}, Format::kCalls);
}

const std::string kIpv4 =
    "/interfaces/interface[name='Eth3']/subinterfaces/subinterface[index='0']/"
    "openconfig-if-ip:ipv4";

struct Case {
  const char* name;
  Outcome (*run)(Host& host);
  std::vector<std::size_t> expected;
  bool refused = false;

  friend std::ostream& operator<<(std::ostream& stream, const Case& each) {
    return stream << each.name;
  }
};

const Case kCases[] = {
    {"Replace", [](Host& host) { return edit(host, "replace-addresses.json"); }, {kAddresses}},
    {"Merge", [](Host& host) { return edit(host, "merge-secondary.json"); }, {kAddresses}},
    {"DeleteOfThePrimary",
     [](Host& host) { return edit(host, "delete-primary.json"); },
     {kAddresses}},
    {"DeleteOfTheList",
     [](Host& host) { return remove(host, kIpv4 + "/addresses/address"); },
     {kAddresses, kAddresses}},  // one after the other: it starts anew
    {"DeleteOfTheFamily", [](Host& host) { return remove(host, kIpv4); }, {}},
    {"Refusal",
     [](Host& host) { return remove(host, kIpv4 + "/config/enabled"); },
     {kAddresses},
     true},
    {"Get", get, {}},
    {"Report", report, {}},
};

class Allocations : public testing::TestWithParam<Case> {};

TEST_P(Allocations, AreThoseThatTheContractAsksFor) {
  ASSERT_NE(dlopen(OCIFIP_PLUGIN, RTLD_LAZY), nullptr) << dlerror();
  const RedirectedCalls redirected(OCIFIP_PLUGIN, [](std::string_view symbol, void* address) {
    const auto noting = kAllocators.find(symbol);
    return noting == kAllocators.end() ? address : noting->second;
  });
  allocated.clear();
  Host host({.plugin = OCIFIP_PLUGIN,
             .models = OCIFIP_MODELS_DIR,
             .device = OCIFIP_EXAMPLES_DIR "/device.json"});
  EXPECT_EQ(allocated, std::vector<std::size_t>()) << "while it registers";
  allocated.clear();
  const Outcome outcome = GetParam().run(host);
  EXPECT_EQ(allocated, GetParam().expected);
  EXPECT_EQ(outcome.refusal.has_value(), GetParam().refused);
  EXPECT_NE(outcome.text, "");  // the plug-in was entered
}

INSTANTIATE_TEST_SUITE_P(Requests, Allocations, testing::ValuesIn(kCases),
                         [](const auto& instance) { return instance.param.name; });

}  // namespace
