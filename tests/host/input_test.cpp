// Requests held against the models.
#include <gtest/gtest.h>

#include <string>

#include "cases.h"
#include "io/check_input.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io_testing.h"

namespace ocifip {
namespace {

const std::string kIpv4 =
    "/interfaces/interface[name='Eth1']/subinterfaces/subinterface[index='0']/ipv4";

std::string in_ipv4(const std::string& content) {
  return R"({"interfaces":{"interface":[{"name":"Eth1","subinterfaces":{"subinterface":[
{"index":0,"openconfig-if-ip:ipv4":{)" +
         content + "}}]}}]}}";
}

Document read(const std::string& text) {
  return read_document(models(),
                       {"in", text, text.starts_with('<') ? Encoding::kXml : Encoding::kJson});
}

std::string check(Document document, InputUse use) {
  check_against_models(models(), document, use);
  return "taken";
}

std::string result_of_case(const cases::Case& each) {
  return result_of([&]() -> std::string {
    if (each.has("edit")) return check(read(in_ipv4(each["edit"])), InputUse::kEdit);
    if (each.has("query")) return check(read(in_ipv4(each["query"])), InputUse::kQuery);
    if (each.has("data")) return check(read(in_ipv4(each["data"])), InputUse::kData);
    if (each.has("document")) return check(read(each["document"]), InputUse::kEdit);
    if (each.has("path")) return check(read_path(models(), each["path"]), InputUse::kQuery);
    return check(read_path(models(), each["delete"], Operation::kDelete), InputUse::kEdit);
  });
}

// Puts the case's own path in the place of the word for it.
std::string expected_of(const cases::Case& each) {
  std::string expected = each["expected"];
  const auto put = [&expected](const std::string& word, const std::string& text) {
    const auto at = expected.find(word);
    if (at != std::string::npos) expected.replace(at, word.size(), text);
  };
  put("IPV4", kIpv4);
  put("PATH", each.has("path") ? each["path"] : each["delete"]);
  return expected;
}

TEST(Input, IsHeldAgainstTheModels) {
  for (const auto& each : cases::read(OCIFIP_CASES "wrong-inputs.txt")) {
    EXPECT_EQ(result_of_case(each), expected_of(each)) << each.where;
  }
}

// A mapping takes values for texts: one number has one text.
TEST(Input, HasNumbersInCanonicalForm) {
  auto document = read(in_ipv4(R"("config":{"mtu":"+01500"})"));
  EXPECT_EQ(check_against_models(models(), document, InputUse::kEdit).count, 0U);
  EXPECT_NE(print(document, Format::kTree).find("mtu = \"1500\""), std::string::npos);
}

// Each with all below it as one.
TEST(Input, CountsStateInEdits) {
  auto document = read(in_ipv4(R"("config":{"mtu":1500},"state":{"mtu":1,"dhcp-client":true},
      "proxy-arp":{"state":{"mode":"ALL"}})"));
  const auto state = check_against_models(models(), document, InputUse::kEdit);
  EXPECT_EQ(state.count, 2U);
  EXPECT_EQ(state.first, kIpv4 + "/proxy-arp/state");
  EXPECT_EQ(check_against_models(models(), document, InputUse::kQuery).count, 0U);
}

}  // namespace
}  // namespace ocifip
