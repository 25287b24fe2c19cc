// Reads of many interfaces, which are answered part by part.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/data_path.h"
#include "io/print_document.h"
#include "io/read_document.h"
#include "io_testing.h"
#include "mapping/joined_text.h"
#include "mapping/read_groups.h"
#include "ocifip/host.h"

namespace ocifip {
namespace {

constexpr Format kFormats[] = {Format::kJson, Format::kXml, Format::kTree};

std::string text_of(const Document& document, Format format) {
  std::vector<std::string> notes;
  return print_document(document, format, notes);
}

Document interfaces(const std::string& first, const std::string& second) {
  return read_document(models(), {"test",
                                  R"({"openconfig-interfaces:interfaces":{"interface":[{"name":")" +
                                      first + R"("},{"name":")" + second + "\"}]}}",
                                  Encoding::kJson});
}

TEST(JoinedText, IsThatOfAllItsParts) {
  Document all = interfaces("Eth1", "Eth2");
  merge_document(all, interfaces("Eth3", "Eth4"));
  for (const Format format : kFormats) {
    std::vector<std::string> notes;
    JoinedText text(format);
    text.add({}, notes);
    text.add(interfaces("Eth1", "Eth2"), notes);
    text.add({}, notes);
    text.add(interfaces("Eth3", "Eth4"), notes);
    EXPECT_EQ(text.finish(), text_of(all, format));
    EXPECT_EQ(JoinedText(format).finish(), text_of({}, format));
  }
}

// The names that each group has, and the paths of what it is asked for.
std::string groups_of(const std::vector<std::string>& paths) {
  std::vector<Document> reads;
  for (const std::string& path : paths) reads.push_back(read_path(models(), path));
  std::string text;
  for (const ReadGroup& group : read_groups(reads, {"A", "B", "A.1", "A.2", "C"}, 2)) {
    text += text.empty() ? "" : " | ";
    for (const std::string& name : group.native_names) text += name + " ";
    for (const Document& read : reads_of(group, reads)) {
      text += "(";
      for (const DocumentNode& root : read.roots) {
        for (const DocumentNode& entry : root.children) text += instance_path({&entry});
      }
      text += ")";
    }
  }
  return text;
}

TEST(ReadGroups, HaveInterfacesAsTheyAreAskedFor) {
  EXPECT_EQ(groups_of({"/interfaces/interface"}), "A A.1 A.2 (/interface) | B C (/interface)");
  EXPECT_EQ(groups_of({"/interfaces/interface[name=C]", "/interfaces/interface/name"}),
            "C A A.1 A.2 (/interface[name='C'])(/interface) | B ()(/interface)");
  EXPECT_EQ(groups_of({"/interfaces/interface[name=X]", "/interfaces/interface[name=B]"}),
            "B (/interface[name='X'])(/interface[name='B'])");
  EXPECT_EQ(groups_of({"/interfaces", "/Halvane-Ombrix-ifmgr-cfg:interface-configurations"}), "");
}

TEST(ReadGroups, AreLeftByOtherInterfaces) {
  const ReadGroup group = {{"Eth1", "Eth2"}, {}};
  EXPECT_TRUE(is_of_group({}, group));
  EXPECT_TRUE(is_of_group(interfaces("Eth1", "Eth2"), group));
  EXPECT_FALSE(is_of_group(interfaces("Eth1", "Eth3"), group));
}

// A device of more interfaces than are read together, each with an address.
std::string large_device() {
  std::string entries;
  for (int i = 0; i < 450; ++i) {
    entries += entries.empty() ? "" : ",";
    entries +=
        R"({"active":"act","interface-name":"Eth)" + std::to_string(i) +
        R"(","Halvane-Ombrix-ipv4-io-cfg:ipv4-network":{"addresses":{"primary":{"address":")" +
        "10.0." + std::to_string(i / 200) + "." + std::to_string(i % 200 + 1) +
        R"(","netmask":"255.255.255.0"}}}})";
  }
  return R"({"node":"n","native":{"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{)"
         R"("interface-configuration":[)" +
         entries + "]}}}";
}

TEST(Hosts, ReadManyInterfacesAsTheyReadSome) {
  const Folder folder;
  Host host({.plugin = OCIFIP_PLUGIN,
             .models = OCIFIP_MODELS_DIR,
             .device = folder.write("dev.json", large_device())});
  const auto get = [&host](const std::vector<std::string>& paths) {
    return host.get({.document = {}, .paths = paths}, Format::kTree).text;
  };
  std::string some;
  for (int first = 0; first < 450; first += 90) {
    std::vector<std::string> paths;
    for (int i = first; i < first + 90; ++i) {
      paths.push_back("/interfaces/interface[name=Eth" + std::to_string(i) + "]");
    }
    const std::string text = get(paths);
    some += some.empty() ? text : text.substr(text.find('\n') + 1);
  }
  EXPECT_NE(some.find("10.0.2.50"), std::string::npos);
  EXPECT_EQ(get({"/interfaces"}), some);
}

}  // namespace
}  // namespace ocifip
