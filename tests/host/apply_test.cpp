// Applying native edits: what becomes of the configuration, what is refused, how changes are shown,
// and what the device and its file are afterwards.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "cases.h"
#include "device/device_directory.h"
#include "device/native_edit.h"
#include "io/device_file.h"
#include "io/device_json.h"
#include "io/difference.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io/save_file.h"
#include "io_testing.h"
#include "result_codes.h"

namespace ocifip {
namespace {

const Models& box() {
  static const Models loaded(OCIFIP_CASES "../box");
  return loaded;
}

// The content of "top".
Document top(const std::string& content) {
  return read_document(box(), {"test", R"({"box:top":{)" + content + "}}", Encoding::kJson});
}

// Siblings in one line: `size=1 inner{a=x} item{name=n} tag=t`.
std::string flat(const std::vector<DocumentNode>& nodes) {
  std::string text;
  for (const auto& node : nodes) {
    const bool is_leaf = node.kind == NodeKind::kLeaf || node.kind == NodeKind::kLeafList;
    text += text.empty() ? "" : " ";
    text += node.operation ? "!" : "";
    text += node.tag + (is_leaf ? "=" + node.value.value_or("?") : "{" + flat(node.children) + "}");
  }
  return text;
}

// JSON has no word for the operation of nodes that are only led through.
void set_none(std::vector<DocumentNode>& nodes, const std::string& tag) {
  for (auto& node : nodes) {
    if (node.tag == tag) node.operation = Operation::kNone;
    set_none(node.children, tag);
  }
}

TEST(NativeEdits, MakeANewConfigurationOrAreRefused) {
  for (const auto& each : cases::read(OCIFIP_CASES "native-edits.txt")) {
    SCOPED_TRACE(each.where);
    const Document before = top(each["before"]);
    Document edit = top(each["edit"]);
    set_none(edit.roots, each["none"]);
    const EditedNative edited = edit_native(box(), before, edit);
    EXPECT_EQ(edited.refusal ? edited.refusal->text() : flat(edited.native.roots),
              each["expected"]);
    EXPECT_EQ(edited.native.roots.empty(), edited.refusal || each["expected"].empty());
    EXPECT_EQ(flat(before.roots), flat(top(each["before"]).roots));
  }
}

// An interface's entry is no more than the way to what is below it.
TEST(NativeEdits, LeadThroughInterfaces) {
  const auto edited = [](const std::string& interface) {
    const Document edit =
        read_document(models(), {"test",
                                 R"({"Halvane-Ombrix-ifmgr-cfg:interface-configurations":
                      {"interface-configuration":[{"active":"act","interface-name":"E")" +
                                     interface + "}]}}",
                                 Encoding::kJson});
    return flat(edit_native(models(), {}, edit).native.roots);
  };
  EXPECT_EQ(edited(""), "");
  EXPECT_EQ(edited(R"(,"description":"d",)"
                   R"("@description":{"ietf-netconf:operation":"remove"})"),
            "");
  EXPECT_EQ(edited(R"(,"description":"d")"),
            "interface-configurations{interface-configuration{active=act interface-name=E "
            "description=d}}");
}

// --- differences ---------------------------------------------------------------------------------

TEST(Differences, AreTheEditFromTheOneToTheOther) {
  for (const auto& each : cases::read(OCIFIP_CASES "differences.txt")) {
    SCOPED_TRACE(each.where);
    const Document before = top(each["before"]);
    const Document after = top(each["after"]);
    const Document changes = difference(before, after);
    EXPECT_EQ(flat(changes.roots), each["difference"]);
    EXPECT_EQ(print_changes(changes, before), each["lines"]);
    EXPECT_TRUE(difference(edit_native(box(), before, changes).native, after).roots.empty());
  }
}

// --- the native configuration of a device file ---------------------------------------------------

TEST(NativeSections, AreHeldAgainstTheModels) {
  for (const auto& each : cases::read(OCIFIP_CASES "native-sections.txt")) {
    EXPECT_EQ(result_of([&] {
                check_native(box(), read_device(box(), "dev.json", each["given"]).native.whole());
                return std::string();
              }),
              each["expected"])
        << each.where;
  }
}

// What is not native is as it was, to the byte.
TEST(NativeSections, AreReplacedAlone) {
  for (const auto& each : cases::read(OCIFIP_CASES "splices.txt")) {
    EXPECT_EQ(
        result_of([&] { return with_native("dev.json", each["before"], "{\n  \"a\": 1\n}\n"); }),
        each["after"])
        << each.where;
  }
}

// --- the device ----------------------------------------------------------------------------------

Device device(const std::string& file) {
  return read_device(models(), file, read_file(OCIFIP_CASES + file));
}

std::string state_of(const DeviceDirectory& directory) {
  std::string text;
  for (const auto& name : directory.interface_names()) {
    text += name;
    const auto* interface = directory.interface(directory.handle_of(name));
    if (interface != nullptr && interface->ipv4.primary) {
      text += ' ' + std::to_string(interface->ipv4.primary->bytes[0]) + '/' +
              std::to_string(interface->ipv4.primary->prefix_length);
    }
    text += '\n';
  }
  for (const auto& [path, item] : directory.configured_items()) text += path + '\n';
  return text;
}

TEST(ConfiguredDevices, AnswerFromTheirNewConfiguration) {
  DeviceDirectory directory(device("device-before.json"));
  EXPECT_EQ(state_of(directory), "Eth1\nEth2 192/24\n/cfg/if/act/Eth1/ipv4/arp/proxy-arp\n");
  directory.configure(device("device-after.json").native);
  EXPECT_EQ(state_of(directory),
            "Eth1 10/16\nEth2 192/24\nEth3\n/cfg/if/act/Eth2/ipv4/arp/proxy-arp\n");
}

// A host goes on with the device as an applied edit left it, and without one that was refused.
TEST(Hosts, KeepWhatWasApplied) {
  const Folder folder;
  const std::string file = folder.write("dev.json", R"({"interfaces":[{"name":"Eth1"}]})");
  Host host(
      {.plugin = OCIFIP_PLUGIN, .models = OCIFIP_MODELS_DIR, .device = file, .unchecked = true});
  const std::string path =
      "/interfaces/interface[name='Eth1']/subinterfaces/subinterface[index='0']/ipv4";
  const auto request = [](const std::string& addresses) {
    return Source{"test",
                  R"({"openconfig-interfaces:interfaces":{"interface":[{"name":"Eth1",
                     "subinterfaces":{"subinterface":[{"index":0,"openconfig-if-ip:ipv4":{
                     "addresses":{"address":[)" +
                      addresses + "]}}}]}}]}}",
                  Encoding::kJson};
  };
  const auto apply = [&host](const EditRequest& edit, bool save = false) {
    return result_of([&] {
      const Outcome outcome = host.apply({edit, save}, Format::kTree);
      std::string text = outcome.text;
      for (const auto& note : outcome.notes) text += "note: " + note + '\n';
      return outcome.refusal ? std::string(result_name(outcome.refusal->code)) : text;
    });
  };
  const auto text = [&file] {
    std::ifstream stream(file);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  };
  const std::string address =
      "/interface-configurations/interface-configuration[active='act'][interface-name='Eth1']"
      "/ipv4-network/addresses/";
  const EditRequest primary = {request(R"({"ip":"10.0.0.1","config":{"ip":"10.0.0.1",
      "prefix-length":24}})"),
                               {},
                               DefaultOperation::kReplace};
  const std::string unsaved = text();
  EXPECT_EQ(apply(primary), "+ " + address + "primary/address = \"10.0.0.1\"\n+ " + address +
                                "primary/netmask = \"255.255.255.0\"\n");
  EXPECT_EQ(apply({request(R"({"ip":"10.0.0.999","config":{"ip":"10.0.0.999",
      "prefix-length":24}})"),
                   {}}),
            "invalid-data");
  EXPECT_EQ(text(), unsaved);
  EXPECT_EQ(apply(primary, true), "note: nothing changed on the device\n");
  EXPECT_EQ(text(), unsaved);
  EXPECT_EQ(apply({std::nullopt, {path + "/addresses/address[ip='10.0.0.1']"}}, true),
            "- " + address + "primary/address\n- " + address + "primary/netmask\n");
  EXPECT_EQ(apply(primary, true).substr(0, 1), "+");
  EXPECT_NE(text(), unsaved);
  // What another has written since is not undone.
  EXPECT_EQ(folder.write("dev.json", "{}"), file);
  EXPECT_EQ(apply({std::nullopt, {path + "/addresses/address[ip='10.0.0.1']"}}, true),
            file + ": cannot be saved: it was changed since it was read");
  EXPECT_EQ(text(), "{}");
}

}  // namespace
}  // namespace ocifip
