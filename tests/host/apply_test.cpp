// Applying native edits: what becomes of the configuration, what is refused, how changes are shown,
// and what the device and its file are afterwards.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "device/device_directory.h"
#include "device/native_edit.h"
#include "io/device_file.h"
#include "io/device_json.h"
#include "io/difference.h"
#include "io/document_nodes.h"
#include "io/read_document.h"
#include "io_testing.h"
#include "result_codes.h"

namespace ocifip {
namespace {

constexpr const char* kBoxModule = R"(module box {
  yang-version 1.1; namespace "urn:box"; prefix b;
  container top {
    leaf size { type uint8; }
    leaf flag { type empty; }
    leaf-list tag { type string; }
    container inner { leaf a { type string; } leaf b { type string; } container core { leaf c { type string; } } }
    container mark { presence "it is marked"; leaf note { type string; } }
    list item { key "name"; leaf value { type string; } container more { leaf deep { type string; } }
                leaf name { type string { pattern "[a-z]+"; } } }
    list pair { key "left right"; leaf left { type uint8; } leaf right { type uint8; } }
    list strict { key "id"; leaf id { type uint8; } leaf needed { type string; mandatory true; } anydata any; }
    list few { key "id"; leaf id { type uint8; }
               leaf-list part { type string; min-elements 2; }
               container way { choice kind { mandatory true; leaf left { type empty; } leaf right { type empty; } } } }
    leaf chosen { type leafref { path "../item/name"; } }
    anydata any;
  }
  list user { key "name"; leaf name { type string; } }
})";

const Models& box() {
  static const auto loaded = models_of("box.yang", kBoxModule);
  return *loaded;
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

struct Edit {
  const char* before;
  const char* edit;
  const char* expected;   // the configuration after it, or what is refused
  const char* none = "";  // nodes that have the operation "none"
};

std::ostream& operator<<(std::ostream& out, const Edit& row) {
  return out << row.before << " <- " << row.edit;
}

class Edits : public testing::TestWithParam<Edit> {};

TEST_P(Edits, MakeANewConfigurationOrAreRefused) {
  const Edit& row = GetParam();
  const Document before = top(row.before);
  Document edit = top(row.edit);
  set_none(edit.roots, row.none);
  const EditedNative edited = edit_native(box(), before, edit);
  EXPECT_EQ(edited.refusal ? edited.refusal->text() : flat(edited.native.roots), row.expected);
  EXPECT_EQ(edited.native.roots.empty(), edited.refusal || std::string(row.expected).empty());
  EXPECT_EQ(flat(before.roots), flat(top(row.before).roots));
}

#define OPERATION(name) R"("@":{"ietf-netconf:operation":")" name R"("})"
#define OPERATION_OF(leaf, name) R"("@)" leaf R"(":{"ietf-netconf:operation":")" name R"("})"
#define MISSING(tag, path) \
  "0x40802000 (data-missing) tag \"" tag "\" at " path " : the node does not exist on the device"
#define INVALID(tag, path, reason) "0x40802200 (invalid-data) tag \"" tag "\" at " path " : " reason

INSTANTIATE_TEST_SUITE_P(
    OfLeaves, Edits,
    testing::Values(
        Edit{"", R"("size":1)", "top{size=1}"}, Edit{R"("size":1)", R"("size":2)", "top{size=2}"},
        Edit{R"("size":1)", R"("size":2,)" OPERATION_OF("size", "replace"), "top{size=2}"},
        Edit{"", R"("size":2,)" OPERATION_OF("size", "replace"), "top{size=2}"},
        Edit{R"("flag":[null])", R"("size":2)", "top{size=2 flag=}"},
        Edit{"", R"("flag":[null])", "top{flag=}"},
        Edit{R"("size":1,"flag":[null])", R"("size":1,)" OPERATION_OF("size", "delete"),
             "top{flag=}"},
        Edit{R"("size":1,"flag":[null])", R"("size":null,)" OPERATION_OF("size", "delete"),
             "top{flag=}"},
        Edit{R"("size":1,"flag":[null])", R"("size":9,)" OPERATION_OF("size", "delete"),
             "top{flag=}"},
        Edit{R"("flag":[null])", R"("size":1,)" OPERATION_OF("size", "delete"),
             MISSING("size", "/top/size")},
        Edit{"", R"("size":1,)" OPERATION_OF("size", "delete"), MISSING("size", "/top/size")},
        Edit{R"("flag":[null])", R"("size":1,)" OPERATION_OF("size", "remove"), "top{flag=}"},
        Edit{R"("size":1,"flag":[null])", R"("size":1,)" OPERATION_OF("size", "remove"),
             "top{flag=}"},
        Edit{R"("size":1)", R"("size":2)", "top{size=1}", "size"},
        Edit{R"("flag":[null])", R"("size":2)", "top{flag=}", "size"}));

INSTANTIATE_TEST_SUITE_P(
    OfLeafLists, Edits,
    testing::Values(
        Edit{R"("tag":["a"])", R"("tag":["b","a"])", "top{tag=a tag=b}"},
        Edit{R"("tag":["a","b"])", R"("tag":["a"],"@tag":[{"ietf-netconf:operation":"delete"}])",
             "top{tag=b}"},
        Edit{R"("tag":["b"])", R"("tag":["a"],"@tag":[{"ietf-netconf:operation":"delete"}])",
             MISSING("tag", "/top/tag[.='a']")},
        Edit{R"("tag":["b"])", R"("tag":["a"],"@tag":[{"ietf-netconf:operation":"remove"}])",
             "top{tag=b}"},
        Edit{R"("size":1,"tag":["a","b"])",
             R"("tag":[null],"@tag":[{"ietf-netconf:operation":"delete"}])", "top{size=1}"},
        Edit{R"("size":1)", R"("tag":[null],"@tag":[{"ietf-netconf:operation":"delete"}])",
             MISSING("tag", "/top/tag")},
        Edit{R"("size":1)", R"("tag":[null],"@tag":[{"ietf-netconf:operation":"remove"}])",
             "top{size=1}"}));

INSTANTIATE_TEST_SUITE_P(
    OfContainers, Edits,
    testing::Values(
        Edit{R"("inner":{"a":"x"})", R"("inner":{"b":"y"})", "top{inner{a=x b=y}}"},
        Edit{R"("inner":{"a":"x","core":{"c":"z"}})",
             R"("inner":{)" OPERATION("replace") R"(,"b":"y"})", "top{inner{b=y}}"},
        Edit{"", R"("inner":{)" OPERATION("replace") R"(,"b":"y"})", "top{inner{b=y}}"},
        Edit{R"("inner":{"a":"x","b":"y"},"size":1)", R"("inner":{)" OPERATION("replace") "}",
             "top{size=1}"},
        // Below a replaced node a deletion is judged by what was there.
        Edit{R"("inner":{"a":"x","b":"y"})",
             R"("inner":{)" OPERATION("replace") R"(,"b":"z","a":"x",)" OPERATION_OF("a",
                                                                                     "delete") "}",
             "top{inner{b=z}}"},
        Edit{R"("inner":{"b":"y"})",
             R"("inner":{)" OPERATION("replace") R"(,"b":"z","a":"x",)" OPERATION_OF("a",
                                                                                     "delete") "}",
             MISSING("a", "/top/inner/a")},
        Edit{R"("inner":{"core":{"c":"z"}})",
             R"("inner":{)" OPERATION("replace") R"(,"a":"x","core":{"c":"z",)" OPERATION_OF(
                 "c", "delete") "}}",
             "top{inner{a=x}}"},
        Edit{R"("inner":{"a":"x"},"size":1)", R"("inner":{)" OPERATION("delete") R"(,"b":"y"})",
             "top{size=1}"},
        Edit{R"("size":1)", R"("inner":{)" OPERATION("delete") "}", MISSING("inner", "/top/inner")},
        Edit{R"("size":1)", R"("inner":{)" OPERATION("remove") R"(,"b":"y"})", "top{size=1}"},
        Edit{R"("inner":{"a":"x"},"size":1)", R"("inner":{)" OPERATION("remove") "}",
             "top{size=1}"},
        // What an edit leaves empty goes, up to the top; what was empty before it stays.
        Edit{R"("inner":{"core":{"c":"z"}})",
             R"("inner":{"core":{"c":"z",)" OPERATION_OF("c", "delete") "}}", ""},
        Edit{R"("inner":{},"size":1)", R"("inner":{})", "top{size=1 inner{}}"},
        Edit{R"("size":1)", R"("inner":{"core":{}})", "top{size=1}"},
        Edit{R"("mark":{"note":"x"})", R"("mark":{"note":"x",)" OPERATION_OF("note", "delete") "}",
             "top{mark{}}"},
        Edit{R"("size":1)", R"("mark":{})", "top{size=1 mark{}}"},
        Edit{R"("mark":{"note":"x"},"size":1)", R"("mark":{)" OPERATION("delete") "}",
             "top{size=1}"},
        // A node that is only led through is not made.
        Edit{R"("inner":{"a":"x"})", R"("inner":{"b":"y"})", "top{inner{a=x b=y}}", "inner"},
        Edit{R"("size":1)", R"("inner":{"b":"y"})", MISSING("inner", "/top/inner"), "inner"},
        Edit{R"("size":1)", R"("inner":{"b":"y",)" OPERATION_OF("b", "remove") "}", "top{size=1}",
             "inner"},
        Edit{R"("size":1)", R"("inner":{"b":"y",)" OPERATION_OF("b", "delete") "}",
             MISSING("b", "/top/inner/b"), "inner"},
        Edit{R"("size":1)", R"("mark":{})", "top{size=1}", "mark"}));

INSTANTIATE_TEST_SUITE_P(
    OfEntries, Edits,
    testing::Values(
        Edit{R"("item":[{"name":"a","value":"x"}])",
             R"("item":[{"name":"b"},{"name":"a","value":"y"}])",
             "top{item{name=a value=y} item{name=b}}"},
        Edit{R"("pair":[{"left":1,"right":1},{"left":1,"right":2}])",
             R"("pair":[{)" OPERATION("delete") R"(,"left":1,"right":2},{"left":2,"right":1}])",
             "top{pair{left=1 right=1} pair{left=2 right=1}}"},
        Edit{R"("item":[{"name":"a","value":"x","more":{"deep":"d"}},{"name":"b","value":"x"}])",
             R"("item":[{)" OPERATION("replace") R"(,"name":"a","value":"y"}])",
             "top{item{name=a value=y} item{name=b value=x}}"},
        Edit{R"("item":[{"name":"a","value":"x"}])",
             R"("item":[{)" OPERATION("replace") R"(,"name":"a"}])", "top{item{name=a}}"},
        Edit{"", R"("item":[{)" OPERATION("replace") R"(,"name":"a","value":"y"}])",
             "top{item{name=a value=y}}"},
        Edit{R"("item":[{"name":"a","more":{"deep":"d"}}])",
             R"("item":[{"name":"a","more":{)" OPERATION("delete") "}}]", "top{item{name=a}}"},
        Edit{R"("item":[{"name":"a"},{"name":"b"}])",
             R"("item":[{)" OPERATION("delete") R"(,"name":"a","value":"y"}])",
             "top{item{name=b}}"},
        Edit{R"("item":[{"name":"b"}])", R"("item":[{)" OPERATION("delete") R"(,"name":"a"}])",
             MISSING("item", "/top/item[name='a']")},
        Edit{R"("item":[{"name":"b"}])", R"("item":[{)" OPERATION("remove") R"(,"name":"a"}])",
             "top{item{name=b}}"},
        Edit{R"("item":[{"name":"a"}],"size":1)",
             R"("item":[{)" OPERATION("remove") R"(,"name":"a"}])", "top{size=1}"},
        Edit{R"("item":[{"name":"a"},{"name":"b"}],"size":1)",
             R"("item":[{)" OPERATION("delete") "}]", "top{size=1}"},
        Edit{R"("item":[{"name":"a"}])",
             R"("item":[{)" OPERATION("delete") R"(},{"name":"c"},{"name":"a","value":"n"}])",
             "top{item{name=c} item{name=a value=n}}"},
        Edit{R"("size":1)", R"("item":[{)" OPERATION("delete") "}]", MISSING("item", "/top/item")},
        Edit{R"("size":1)", R"("item":[{)" OPERATION("remove") "}]", "top{size=1}"},
        Edit{R"("item":[{"name":"a"}])", R"("item":[{"value":"x"}])",
             "0xaaf2f000 (list-key) tag \"item\" at /top/item : a list entry is not named by each "
             "of its keys"},
        Edit{
            R"("pair":[{"left":1,"right":1}])", R"("pair":[{)" OPERATION("remove") R"(,"left":1}])",
            "0xaaf2f000 (list-key) tag \"pair\" at /top/pair[left='1'] : a list entry is not named "
            "by each of its keys"},
        Edit{R"("item":[{"name":"a"}])", R"("item":[{"name":"b"}])", "top{item{name=a}}", "item"},
        Edit{R"("item":[{"name":"a"}])", R"("item":[{"name":"b","value":"x"}])",
             MISSING("item", "/top/item[name='b']"), "item"}));

// Each edit begins with something that could be done: nothing of it is.
INSTANTIATE_TEST_SUITE_P(
    OfWhatIsNotValid, Edits,
    testing::Values(
        Edit{R"("size":1)", R"("flag":[null],"size":256)",
             INVALID("size", "/top/size", "Value \"256\" is out of type uint8 min/max bounds")},
        Edit{R"("size":1)", R"("flag":[null],"size":null)",
             INVALID("size", "/top/size", "a leaf without a value")},
        Edit{"", R"("flag":[null],"item":[{"name":"A"}])",
             INVALID("item", "/top/item[name='A']",
                     "key \"name\": Unsatisfied pattern - \"A\" does not conform to \"[a-z]+\"")},
        Edit{"", R"("flag":[null],"strict":[{"id":1}])",
             INVALID("strict", "/top/strict[id='1']",
                     "Mandatory node \"needed\" instance does not exist")},
        Edit{R"("strict":[{"id":1,"needed":"x"}])",
             R"("flag":[null],"strict":[{"id":1,"needed":"x",)" OPERATION_OF("needed",
                                                                             "delete") "}]",
             INVALID("strict", "/top/strict[id='1']",
                     "Mandatory node \"needed\" instance does not exist")},
        Edit{R"("chosen":"a","item":[{"name":"a"}])",
             R"("flag":[null],"item":[{)" OPERATION("delete") R"(,"name":"a"}])",
             INVALID("chosen", "/top/chosen",
                     "Invalid leafref value \"a\" - no target instance \"../item/name\" with the "
                     "same value")},
        Edit{"", R"("flag":[null],"inner":{"elsewhere":5})",
             INVALID("elsewhere", "/top/inner/elsewhere", "no model has this node")},
        Edit{R"("few":[{"id":1,"part":["a","b"],"way":{"left":[null]}}])",
             R"("few":[{"id":2,"part":["a"],"way":{"left":[null]}}])",
             INVALID("few", "/top/few[id='2']", "Too few \"part\" instances")},
        Edit{R"("few":[{"id":1,"part":["a","b"],"way":{"left":[null]}}])",
             R"("few":[{"id":2,"part":["a","b"]}])",
             INVALID("few", "/top/few[id='2']", "Mandatory choice \"kind\" data do not exist")},
        Edit{R"("any":{"x":1})", R"("size":1)", "top{size=1 any{x=1}}"},
        Edit{"", R"("strict":[{"id":1,"any":{"x":{"y":1}}}])",
             INVALID("strict", "/top/strict[id='1']",
                     "Mandatory node \"needed\" instance does not exist")}));

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
  EXPECT_EQ(edited(R"(,"description":"d",)" OPERATION_OF("description", "remove")), "");
  EXPECT_EQ(edited(R"(,"description":"d")"),
            "interface-configurations{interface-configuration{active=act interface-name=E "
            "description=d}}");
}

// --- differences ---------------------------------------------------------------------------------

struct Pair {
  const char* before;
  const char* after;
  const char* difference;  // "!" marks what is deleted
  const char* lines;
};

std::ostream& operator<<(std::ostream& out, const Pair& row) {
  return out << row.before << " -> " << row.after;
}

class Differences : public testing::TestWithParam<Pair> {};

TEST_P(Differences, AreTheEditFromTheOneToTheOther) {
  const Pair& row = GetParam();
  const Document before = top(row.before);
  const Document after = top(row.after);
  const Document changes = difference(before, after);
  EXPECT_EQ(flat(changes.roots), row.difference);
  EXPECT_EQ(print_changes(changes, before), row.lines);
  EXPECT_TRUE(difference(edit_native(box(), before, changes).native, after).roots.empty());
}

INSTANTIATE_TEST_SUITE_P(
    All, Differences,
    testing::Values(
        Pair{R"("size":1,"inner":{})", R"("size":1)", "", ""},
        Pair{R"("size":1,"flag":[null])", R"("size":2,"inner":{"a":"x y"})",
             "top{size=2 !flag= inner{a=x y}}",
             "~ /top/size = \"1\" -> \"2\"\n- /top/flag\n+ /top/inner/a = \"x y\"\n"},
        Pair{R"("tag":["a","b"],"inner":{"a":"x","core":{"c":"z"}})", R"("tag":["c","b"])",
             "top{!tag=a tag=c inner{!a=x core{!c=z}}}",
             "- /top/tag[.='a']\n+ /top/tag[.='c']\n- /top/inner/a\n- /top/inner/core/c\n"},
        Pair{R"("item":[{"name":"a","value":"x"},{"name":"b","more":{"deep":"d"}}])",
             R"("item":[{"name":"b","more":{"deep":"e"}},{"name":"c"},{"name":"d","value":"v"}])",
             "top{!item{name=a} item{name=b more{deep=e}} item{name=c} item{name=d value=v}}",
             "- /top/item[name='a']\n~ /top/item[name='b']/more/deep = \"d\" -> \"e\"\n"
             "+ /top/item[name='c']\n+ /top/item[name='d']/value = \"v\"\n"},
        Pair{R"("mark":{"note":"n"})", R"("mark":{})", "top{mark{!note=n}}", "- /top/mark/note\n"},
        Pair{R"("mark":{"note":"n"})", "", "top{!mark{}}", "- /top/mark\n"},
        Pair{"", R"("mark":{})", "top{mark{}}", "+ /top/mark\n"}));

// --- the native configuration of a device file ---------------------------------------------------

class NativeSections : public testing::TestWithParam<Case> {};
TEST_P(NativeSections, AreHeldAgainstTheModels) {
  EXPECT_EQ(result_of([] {
              check_native(box(), read_device(box(), "dev.json", GetParam().given));
              return std::string();
            }),
            GetParam().expected);
}

Case section(const std::string& content, const std::string& reason) {
  return {"{\"native\":\n{\"box:top\":\n{" + content + "}}}",
          reason.empty() ? "" : "dev.json: native:3: " + reason};
}

INSTANTIATE_TEST_SUITE_P(
    All, NativeSections,
    testing::Values(
        Case{"{}", ""}, Case{R"({"native":{}})", ""},
        section(R"("size":1,"flag":[null],"any":{"x":[1]},"item":[{"name":"a"}],"chosen":"a")", ""),
        Case{R"({"native":{"a:b":1}})", "dev.json: native:1: no model has this node, at /b"},
        section(R"("sise":1)", "no model has this node, at /top/sise"),
        section(R"("size":-1)", "Value \"-1\" is out of type uint8 min/max bounds, at /top/size"),
        section(R"("size":null)", "a leaf without a value, at /top/size"),
        section(R"("item":[{"value":"x"}])", "an entry without its key \"name\", at /top/item"),
        section(R"("item":[{"name":"a","name":"b"}])",
                "a key is given twice, at /top/item[name='a']"),
        section(R"("item":[{"name":"a"},{"name":"a"}])", "a second \"item\" with the same keys"),
        section(R"("tag":["a","a"])", "Duplicate instance of \"tag\", at /top/tag[.='a']"),
        section(R"("chosen":"b")",
                "Invalid leafref value \"b\" - no target instance \"../item/name\" with the same "
                "value, at "
                "/top/chosen"),
        section(R"("inner":{)" OPERATION("delete") "}", "an operation in data, at /top/inner"),
        section(R"("size":1,"@size":{"ietf-origin:origin":"x"})",
                "an annotation, \"ietf-origin:origin\"")));

// What is not native is as it was, to the byte.
struct Splice {
  const char* before;
  const char* after;
};
class Splices : public testing::TestWithParam<Splice> {};
TEST_P(Splices, ReplaceTheNativeConfigurationAlone) {
  EXPECT_EQ(
      result_of([] { return with_native("dev.json", GetParam().before, "{\n  \"a\": 1\n}\n"); }),
      GetParam().after);
}
INSTANTIATE_TEST_SUITE_P(
    All, Splices,
    testing::Values(Splice{R"({"z":1e2,"native":{"b":{"c":"}"}},"a":"\u00e9"})",
                           "{\"z\":1e2,\"native\":{\n  \"a\": 1\n},\"a\":\"\\u00e9\"}"},
                    Splice{"{\n\t\"native\" : {},\n\t\"a\":1}\n",
                           "{\n\t\"native\" : {\n\t  \"a\": 1\n\t},\n\t\"a\":1}\n"},
                    Splice{"{\n  \"node\": null\n}\n",
                           "{\n  \"node\": null,\n  \"native\": {\n    \"a\": 1\n  }\n}\n"},
                    Splice{"{}", "{\n  \"native\": {\n    \"a\": 1\n  }\n}"},
                    Splice{R"({"x":{"native":{}}})",
                           "{\"x\":{\"native\":{}},\n  \"native\": {\n    \"a\": 1\n  }\n}"},
                    Splice{R"({"native":5})",
                           "dev.json: there is no place for a native configuration"},
                    Splice{"[]", "dev.json: there is no place for a native configuration"}));

// --- the device ----------------------------------------------------------------------------------

constexpr const char* kDevice = R"({"interfaces": [
    {"name": "Eth1"}, {"name": "Eth2", "ipv4": {"primary": "192.0.2.1/24"}}],
  "native": {"Halvane-Ombrix-ifmgr-cfg:interface-configurations": {"interface-configuration": [
    {"active": "act", "interface-name": "Eth1",
     "Halvane-Ombrix-ipv4-arp-cfg:ipv4arp": {"proxy-arp": [null]}}]}}})";
constexpr const char* kConfigured = R"({"native": {
  "Halvane-Ombrix-ifmgr-cfg:interface-configurations": {"interface-configuration": [
    {"active": "act", "interface-name": "Eth1", "Halvane-Ombrix-ipv4-io-cfg:ipv4-network":
      {"addresses": {"primary": {"address": "10.0.0.1", "netmask": "255.255.0.0"}}}},
    {"active": "act", "interface-name": "Eth2", "Halvane-Ombrix-ipv4-io-cfg:ipv4-network":
      {"addresses": {"primary": {"address": "10.9.9.9", "netmask": "255.0.0.0"}}},
     "Halvane-Ombrix-ipv4-arp-cfg:ipv4arp": {"proxy-arp": [null]}},
    {"active": "act", "interface-name": "Eth3"}]}}})";

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
  DeviceDirectory directory(read_device(models(), "dev.json", kDevice));
  EXPECT_EQ(state_of(directory), "Eth1\nEth2 192/24\n/cfg/if/act/Eth1/ipv4/arp/proxy-arp\n");
  directory.configure(read_device(models(), "dev.json", kConfigured).native);
  EXPECT_EQ(state_of(directory),
            "Eth1 10/16\nEth2 192/24\nEth3\n/cfg/if/act/Eth2/ipv4/arp/proxy-arp\n");
}

// A host goes on with the device as an applied edit left it, and without one that was refused.
TEST(Hosts, KeepWhatWasApplied) {
  const Folder folder;
  const std::string file = folder.write("dev.json", R"({"interfaces":[{"name":"Eth1"}]})");
  Host host({OCIFIP_PLUGIN, OCIFIP_MODELS_DIR, file, false});
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
