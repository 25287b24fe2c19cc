// Native edits of many interfaces, which are printed part by part.
#include <gtest/gtest.h>

#include <string>

#include "io_testing.h"
#include "ocifip/host.h"

namespace ocifip {
namespace {

// Two addresses, one, or none; an MTU, which every seventh has replaced: parts differ from each
// other.
std::string subinterface(int index) {
  const std::string net = "10." + std::to_string(index / 200) + "." + std::to_string(index % 200);
  std::string addresses;
  for (int i = 1; i <= index % 3; ++i) {
    const std::string ip = net + "." + std::to_string(i);
    addresses += addresses.empty() ? "" : ",";
    addresses += R"({"ip":")" + ip + R"(","config":{"ip":")" + ip + R"(","prefix-length":24}})";
  }
  std::string family = R"("config":{"mtu":)" + std::to_string(1400 + index);
  if (index % 7 == 0) family += R"(,"@mtu":{"ietf-netconf:operation":"replace"})";
  family += "}";
  if (!addresses.empty()) family = R"("addresses":{"address":[)" + addresses + "]}," + family;
  return R"({"index":)" + std::to_string(index) + R"(,"openconfig-if-ip:ipv4":{)" + family + "}}";
}

std::string edit(Host& host, int first, int last, DefaultOperation operation, Format format) {
  std::string entries;
  for (int index = first; index < last; ++index) {
    entries += (entries.empty() ? "" : ",") + subinterface(index);
  }
  const std::string request =
      R"({"openconfig-interfaces:interfaces":{"interface":[{"name":"Eth9","subinterfaces":)"
      R"({"subinterface":[)" +
      entries + "]}}]}}";
  EditRequest edit;
  edit.document = {"test", request, Encoding::kJson};
  edit.operation = operation;
  const Outcome outcome = host.edit(edit, format);
  EXPECT_FALSE(outcome.refusal);
  return outcome.text;
}

// What stands around the native interfaces in a text.
struct Around {
  std::string before;
  std::string between;
  std::string behind;
};

std::string interfaces_in(const std::string& text, const Around& around) {
  const std::size_t begin = text.find(around.before) + around.before.size();
  return text.substr(begin, text.size() - begin - around.behind.size());
}

void expect_that_parts_join(Format format, const Around& around) {
  Host host({.plugin = OCIFIP_PLUGIN, .models = OCIFIP_MODELS_DIR});
  for (const auto operation : {DefaultOperation::kMerge, DefaultOperation::kReplace}) {
    std::string some;
    for (int first = 0; first < 250; first += 50) {
      some += some.empty() ? "" : around.between;
      some += interfaces_in(edit(host, first, first + 50, operation, format), around);
    }
    EXPECT_NE(some.find("1649"), std::string::npos);
    EXPECT_EQ(interfaces_in(edit(host, 0, 250, operation, format), around), some);
  }
}

TEST(Hosts, PrintEditsOfManyInterfacesAsThoseOfSome) {
  expect_that_parts_join(Format::kTree, {"\n", "", ""});
  expect_that_parts_join(Format::kJson, {"[\n", ",\n", "\n    ]\n  }\n}\n"});
}

}  // namespace
}  // namespace ocifip
