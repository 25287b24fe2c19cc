// Reads of many interfaces, which are answered part by part.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/print_document.h"
#include "io/read_document.h"
#include "io_testing.h"
#include "mapping/joined_text.h"
#include "mapping/read_groups.h"

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

}  // namespace
}  // namespace ocifip
