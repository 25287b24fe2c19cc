// Documents and instance paths: read, joined and printed; and the models that they are read by.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "io/models.h"
#include "io/print_document.h"
#include "io/read_document.h"
#include "io_testing.h"

namespace ocifip {
namespace {

Document read(const std::string& text, Encoding encoding = Encoding::kJson) {
  return read_document(models(), {"in", text, encoding});
}

// The tree that a text is read into: XML when the first bracket is "<".
std::string tree_of(const std::string& text) {
  const auto bracket = text.find_first_of("<{");
  const auto is_xml = bracket != std::string::npos && text[bracket] == '<';
  const auto encoding = is_xml ? Encoding::kXml : Encoding::kJson;
  return result_of([&] { return print(read(text, encoding), Format::kTree); });
}

class Reading : public testing::TestWithParam<Case> {};
TEST_P(Reading, GivesTreeOrReason) { EXPECT_EQ(tree_of(GetParam().given), GetParam().expected); }

// Top-level nodes to put odd things into.
std::string oc(const std::string& members) {
  return "{\"openconfig-interfaces:interfaces\":{" + members + "}}";
}
std::string native(const std::string& members) {
  return "{\"Halvane-Ombrix-ifmgr-cfg:interface-configurations\":{\"interface-configuration\":[{"
         "\"Halvane-Ombrix-ipv4-io-cfg:ipv4-network\":{" +
         members + "}}]}}";
}
std::string oc_tree(const std::string& below) {
  return "openconfig-interfaces:interfaces\n" + below;
}
std::string native_tree(const std::string& below) {
  return "Halvane-Ombrix-ifmgr-cfg:interface-configurations\n  interface-configuration [no keys]\n"
         "    Halvane-Ombrix-ipv4-io-cfg:ipv4-network\n" +
         below;
}
const std::string kMark = "\xEF\xBB\xBF";  // a byte order mark
const std::string kDelete = R"({"ietf-netconf:operation":"delete"})";

INSTANTIATE_TEST_SUITE_P(
    Json, Reading,
    testing::Values(
        Case{"{}", ""}, Case{R"({"interfaces":{}})", oc_tree("")},
        Case{kMark + R"({"a":1})", "a = \"1\"\n"},
        Case{R"({"a":"\uD83D\uDE00"})", "a = \"\xF0\x9F\x98\x80\"\n"},
        Case{oc(R"("interface":[{"config":{"enabled":false,"mtu":9000},"name":"E"}])"),
             oc_tree("  interface [name=\"E\"]\n    name = \"E\"\n    config\n"
                     "      mtu = \"9000\"\n      enabled = \"false\"\n")},
        // What no model knows, or no type accepts, is kept: last, and in its own order.
        Case{oc(R"("z":-0,"y":1.50,"x":1e2,"w":123456789012345678901,"interface":[])"),
             oc_tree("  z = \"-0\"\n  y = \"1.50\"\n  x = \"1e2\"\n"
                     "  w = \"123456789012345678901\"\n")},
        Case{oc(R"("interface":[{"name":"E","name":"F","config":{"mtu":"many"}}])"),
             oc_tree("  interface [name=\"E\"]\n    name = \"E\"\n    name = \"F\"\n"
                     "    config\n      mtu = \"many\"\n")},
        Case{R"({"other:a":{"b":{"openconfig-interfaces:c":"d"}}})",
             "other:a\n  b\n    openconfig-interfaces:c = \"d\"\n"},
        // A leaf without a value, except where the type's only value looks the same.
        Case{native(R"("mtu":null)"), native_tree("      mtu\n")},
        Case{native(R"("mtu":[null])"), native_tree("      mtu\n")},
        Case{native(R"("point-to-point":[null])"), native_tree("      point-to-point = \"\"\n")},
        Case{oc(R"("x":[null,{"a":1},2])"), oc_tree("  x\n  x\n    a = \"1\"\n  x = \"2\"\n")},
        // Metadata stands before or behind what it annotates.
        Case{oc("\"@\":" + kDelete), "openconfig-interfaces:interfaces (delete)\n"},
        Case{native("\"@mtu\":" + kDelete + ",\"mtu\":5"),
             native_tree("      mtu = \"5\" (delete)\n")},
        Case{oc("\"x\":[1,2],\"@x\":[null," + kDelete + "]"),
             oc_tree("  x = \"1\"\n  x = \"2\" (delete)\n")},
        Case{oc(R"("interface":[{"name":"E"},{"name":"F"}],"@interface":[)" + kDelete + "]"),
             oc_tree("  interface [name=\"E\"] (delete)\n    name = \"E\"\n"
                     "  interface [name=\"F\"]\n    name = \"F\"\n")},
        Case{oc(R"("x":1,"@x":{"other:note":[{"a":[]}],"ietf-netconf:operation":"remove"})"),
             oc_tree("  x = \"1\" (remove)\n")}));

INSTANTIATE_TEST_SUITE_P(
    JsonErrors, Reading,
    testing::Values(
        Case{"", "in:1: the text is empty"}, Case{" \n", "in:1: the text is empty"},
        Case{std::string("{\n\0}", 4), "in:2: a NUL byte"},
        Case{"{\"a\":\n\"\xC3(\"}", "in:2: not UTF-8 text"},
        Case{"[]", "in:1: the document is not an object"},
        Case{"5", "in:1: the document is not an object"},
        Case{"{\"a\":1,\n}", "in:2: not valid JSON: unexpected '}'; expected string literal"},
        Case{"{\"a\":1\n", "in:1: not valid JSON: unexpected end of input; expected '}'"},
        Case{"{\"a\":\n1\n,\"b\" 2}",
             "in:3: not valid JSON: unexpected number literal; expected ':'"},
        Case{R"({"a":"\u0000"})", "in:1: a NUL character in a string"},
        Case{"{\"a\":\"\xED\xA0\x80\"}", "in:1: not UTF-8 text"},
        Case{kMark + "\n{\"a b\":1}", "in:2: \"a b\" is not the name of a node"},
        Case{R"({"a":[1,[2]]})", "in:1: an array directly inside an array"},
        Case{"{\"@\":" + kDelete + "}", "in:1: metadata outside of a node"},
        Case{oc("\n\"@\":{\"ietf-netconf:operation\":\"purge\"}"),
             "in:2: unknown operation \"purge\""},
        Case{oc("\"@\":{\"ietf-netconf:operation\":null}"), "in:1: the operation is not a string"},
        Case{oc("\"@\":{\"operation\":\"delete\"}"),
             "in:1: unknown annotation \"operation\", an operation is \"ietf-netconf:operation\""},
        Case{oc("\"@\":5"), "in:1: \"@\" is not an object"},
        Case{oc("\n\n\"@x\":" + kDelete), "in:3: \"@x\" is not beside what it annotates"},
        Case{oc("\"x\":[1,2],\"@x\":" + kDelete),
             "in:1: \"@x\" is not an array, but what it annotates is"},
        Case{oc("\"x\":[1],\"@x\":[null,null]"),
             "in:1: \"@x\" has more elements than what it annotates"},
        Case{oc("\n\"interface\":{}"),
             "in:2: \"interface\" is a list in the model, but a container here"},
        Case{oc("\"interface\":[{},\n5]"),
             "in:2: \"interface\" is a list in the model, but a leaf-list here"},
        Case{"{\n\"interfaces\":[{}]}",
             "in:2: \"interfaces\" is a container in the model, but a list here"},
        Case{native("\n\"mtu\":[5]"), "in:2: \"mtu\" is a leaf in the model, but a leaf-list here"},
        Case{repeat("{\"a\":", 1000000), "in:1: nodes are nested deeper than 256 levels"},
        Case{repeat("{\"a\":", 257) + "1" + repeat("}", 257),
             "in:1: nodes are nested deeper than 256 levels"},
        Case{oc("\"@\":{\"b:c\":" + repeat("[", 1000000)), "in:1: nested too deeply"}));

const std::string kOc = R"(xmlns="http://openconfig.net/yang/interfaces")";
const std::string kNc = R"(xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0")";
std::string xml(const std::string& inside) {
  return "<interfaces " + kOc + " " + kNc + ">" + inside + "</interfaces>";
}

// Elements in a namespace that no model knows.
const std::string kX = "xmlns='urn:x' " + kNc;
std::string unknown(const std::string& inside) { return "<a " + kX + ">" + inside + "</a>"; }

INSTANTIATE_TEST_SUITE_P(
    Xml, Reading,
    testing::Values(
        Case{"<?xml version='1.0' encoding='utf-8'?>\n<!-- c --><?p i?>" + unknown(" x "),
             "urn:x:a = \" x \"\n"},
        Case{kMark + unknown("1"), "urn:x:a = \"1\"\n"},
        Case{"<nc:config " + kNc + "> " + xml("") + "</nc:config>", oc_tree("")},
        Case{"<nc:data " + kNc + ">" + xml("") + "<a xmlns='urn:x'/></nc:data>",
             oc_tree("urn:x:a = \"\"\n")},
        Case{"<data " + kX + "><config/></data>", "urn:x:data\n  config = \"\"\n"},
        Case{"<i:interfaces xmlns:i=\"http://openconfig.net/yang/interfaces\"><i:interface><name "
             "xmlns='urn:x'/><i:name>&lt;&#x41;<![CDATA[<&]]>]</i:name></i:interface>"
             "</i:interfaces>",
             oc_tree("  interface [name=\"<A<&]\"]\n    name = \"<A<&]\"\n"
                     "    urn:x:name = \"\"\n")},
        Case{xml("<x xmlns='urn:x'><y/></x>"), oc_tree("  urn:x:x\n    y = \"\"\n")},
        Case{xml("<interface><config><mtu nc:operation='delete'/><description/><enabled "
                 "nc:operation='merge'>t</enabled></config><state>\n</state><z nc:operation="
                 "'remove'> </z></interface>"),
             oc_tree("  interface [no keys]\n    config\n      mtu (delete)\n"
                     "      description = \"\"\n      enabled = \"t\"\n    state\n"
                     "    z (remove)\n")},
        Case{"<interface-configurations xmlns='urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg' " + kNc +
                 "><interface-configuration><ipv4-network nc:operation='replace' "
                 "xmlns='urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg'><point-to-point "
                 "nc:operation='remove'/></ipv4-network></interface-configuration>"
                 "</interface-configurations>",
             "Halvane-Ombrix-ifmgr-cfg:interface-configurations\n"
             "  interface-configuration [no keys]\n"
             "    Halvane-Ombrix-ipv4-io-cfg:ipv4-network (replace)\n"
             "      point-to-point = \"\" (remove)\n"},
        // Lines are those of the opening tags, whatever stands between.
        Case{"<?p\n?>" + unknown("<!--\n<b>--><b>\n</b><c><![CDATA[\n<d>]]></c>\n<e\nx='>'/><f>\n"
                                 "</f><g nc:operation='none'/>"),
             "in:8: unknown operation \"none\""},
        Case{xml("\n<interface>text</interface>"),
             "in:2: \"interface\" is a list in the model, but a leaf here"},
        Case{xml("<interface>\n<name><b/></name></interface>"),
             "in:2: \"name\" is a leaf in the model, but a container here"},
        Case{unknown("\n<b>text<c/></b>"), "in:2: text and elements side by side, before \"c\""},
        Case{kMark + unknown("\n<\xC3\xA9/>"), "in:2: \"\xC3\xA9\" is not the name of a node"},
        Case{"\n<nc:config " + kX + ">x<b/></nc:config>", "in:2: text outside of a node"},
        Case{"\n<nc:data " + kX + " nc:operation='delete'><b/></nc:data>",
             "in:2: an operation outside of a node"},
        Case{xml("\n<interface operation='delete'/>"),
             "in:2: attribute \"operation\" is not in the namespace "
             "urn:ietf:params:xml:ns:netconf:base:1.0"},
        Case{unknown("\n" + repeat("<b>", 256) + repeat("</b>", 256)),
             "in:2: nodes are nested deeper than 256 levels"},
        Case{xml("\n<interface><config><mtu>1</mtu>\n<mtu>2</mtu></config></interface>"),
             "in:3: a second \"mtu\""},
        Case{xml("<interface><name>E</name></interface><interface><name>F</name></interface>"
                 "\n<interface><name>E</name></interface>"),
             "in:2: a second \"interface\" with the same keys"},
        Case{unknown("<b/>text"), "in:1: text and elements side by side"},
        Case{"<!DOCTYPE a>" + unknown(""), "in:1: a document type is not accepted"}));

// Text that is no XML is refused with libxml2's reason; the line is what counts here.
class Malformed : public testing::TestWithParam<Case> {};
TEST_P(Malformed, XmlIsRefusedWithItsLine) {
  const auto reason = tree_of(GetParam().given);
  const auto start = "in" + GetParam().expected + ": not valid XML: ";
  EXPECT_EQ(reason.substr(0, start.size()), start);
  EXPECT_GT(reason.size(), start.size());
}

INSTANTIATE_TEST_SUITE_P(
    Xml, Malformed,
    testing::Values(Case{unknown("\n<b>"), ":2"}, Case{"<a " + kX + ">\n<b/>\n", ":2"},
                    Case{unknown("") + "\n</a>", ":2"}, Case{unknown("\n&b;"), ":2"},
                    Case{unknown("\n&#0;"), ":2"}, Case{unknown("\n\x01"), ":2"},
                    Case{unknown("") + "\n<b xmlns='urn:y'/>", ":2"},
                    Case{unknown("\n<p:b/>"), ":2"}, Case{unknown("") + "\ntext", ":2"},
                    Case{unknown("\n<b nc:operation='merge' nc:operation='delete'/>"), ":2"},
                    Case{unknown("\n<!-- "), ":2"}, Case{"<!-- nothing -->", ":1"}));

// Every node with all that is known of it, but for its line and what nobody names: a line a node,
// "/path kind module|namespace = value (operation)".
void append_all(std::string& out, const std::string& above, const DocumentNode& node) {
  const auto path = above + '/' + node.tag;
  out += path + ' ' + std::to_string(static_cast<int>(node.kind)) + ' ' + node.module + '|' +
         node.module_namespace;
  out += node.schema == nullptr ? " unknown" : "";
  out += node.value ? " = " + *node.value : "";
  out += node.operation ? " (" + std::to_string(static_cast<int>(*node.operation)) + ')' : "";
  out += '\n';
  for (const auto& child : node.children) append_all(out, path, child);
}
std::string all_of(const Document& document) {
  std::string out;
  for (const auto& root : document.roots) append_all(out, "", root);
  return out;
}

TEST(Reading, SaysOfEachNodeWhatItIsAndWhereItStands) {
  const auto document = read(
      "{\"openconfig-interfaces:interfaces\": {\n\"interface\": [\n{\"config\": {},\n"
      "\"state\": {}, \"openconfig-if-ip:x\": [\n7\n]}], \"b:c\": {}}}");
  const std::string own = "openconfig-interfaces|http://openconfig.net/yang/interfaces";
  EXPECT_EQ(all_of(document), "/interfaces 1 " + own + "\n/interfaces/interface 2 " + own +
                                  "\n/interfaces/interface/config 1 " + own +
                                  "\n/interfaces/interface/state 1 " + own +
                                  "\n/interfaces/interface/x 4 openconfig-if-ip|"
                                  "http://openconfig.net/yang/interfaces/ip unknown = 7\n"
                                  "/interfaces/c 1 |b unknown\n");
  const auto& root = document.roots.at(0);
  const auto& entry = root.children.at(0);
  const std::vector<int> lines = {root.line, entry.line, entry.children.at(0).line,
                                  entry.children.at(1).line, entry.children.at(2).line};
  EXPECT_EQ(lines, (std::vector<int>{1, 3, 3, 4, 5}));
  EXPECT_EQ(entry.schema, models().child(root.schema, "interface", ""));
}

// Values in the form that their types ask for, and operations at each kind of node.
const std::string kPrinted = R"({
  "openconfig-interfaces:interfaces": {
    "interface": [
      {
        "@": {
          "ietf-netconf:operation": "replace"
        },
        "name": "E<\"\u0001",
        "config": {
          "mtu": 1500,
          "@mtu": {
            "ietf-netconf:operation": "delete"
          },
          "description": "5\r",
          "enabled": "TRUE"
        },
        "state": {
          "mtu": "70000",
          "enabled": true,
          "ifindex": "007",
          "counters": {
            "in-octets": "18446744073709551615"
          }
        },
        "urn:other:x": [
          "1",
          null
        ],
        "@urn:other:x": [
          null,
          {
            "ietf-netconf:operation": "remove"
          }
        ],
        "y": {}
      }
    ]
  }
}
)";

TEST(Printing, JsonIsWhatWasRead) { EXPECT_EQ(print(read(kPrinted), Format::kJson), kPrinted); }

TEST(Printing, Xml) {
  const auto printed = print(read(kPrinted), Format::kXml);
  EXPECT_EQ(printed, "<interfaces " + kOc + " " + kNc +
                         R"(>
  <interface nc:operation="replace">
    <name>E&lt;&quot;)"
                         "\xEF\xBF\xBD"
                         R"(</name>
    <config>
      <mtu nc:operation="delete">1500</mtu>
      <description>5&#13;</description>
      <enabled>TRUE</enabled>
    </config>
    <state>
      <mtu>70000</mtu>
      <enabled>true</enabled>
      <ifindex>007</ifindex>
      <counters>
        <in-octets>18446744073709551615</in-octets>
      </counters>
    </state>
    <x xmlns="urn:other">1</x>
    <x xmlns="urn:other" nc:operation="remove"/>
    <y/>
  </interface>
</interfaces>
note: control characters, which XML cannot hold, are replaced: /interfaces/interface[name='E<"\u0001']/name
)");
}

// What is printed and read again is the same document, if what it holds has a form there.
class RoundTrip : public testing::TestWithParam<std::string> {};
TEST_P(RoundTrip, GivesTheSameDocument) {
  const auto document = read(GetParam());
  ASSERT_FALSE(document.roots.empty());
  for (const auto& [format, encoding] :
       {std::pair(Format::kJson, Encoding::kJson), std::pair(Format::kXml, Encoding::kXml)}) {
    const auto printed = print(document, format);
    EXPECT_EQ(all_of(read(printed, encoding)), all_of(document)) << printed;
  }
}

const std::string kSubinterfaceHead =
    R"("interface":[{"name":"E","subinterfaces":{"subinterface":[{"index":0,"openconfig-if-ip:ipv4":{)";
std::string ipv4(const std::string& members) { return oc(kSubinterfaceHead + members + "}}]}}]"); }

INSTANTIATE_TEST_SUITE_P(
    All, RoundTrip,
    testing::Values(
        oc(R"("interface":[{"name":"E & <F> \"'\r\n\t]]>","config":{"name":"E","mtu":1500,)"
           R"("description":" x ","enabled":"TRUE"}},{"name":"é"}])"),
        oc(R"("@":{"ietf-netconf:operation":"replace"},"interface":[{"name":"E","@":)" + kDelete +
           R"(,"config":{"mtu":1500,"@mtu":{"ietf-netconf:operation":"remove"}}}])"),
        ipv4(R"("addresses":{"address":[{"ip":"10.0.0.1","config":{"ip":"10.0.0.1"},"vrrp":{)"
             R"("vrrp-group":[{"virtual-router-id":7,"config":{"virtual-address":["10.0.0.8",)"
             R"("10.0.0.9"],"@virtual-address":[null,)" +
             kDelete + "]}}]}}]}"),
        ipv4(R"("config":{"mtu":null,"@mtu":)" + kDelete + R"(},"urn:x:y":{"z":"1"},"v":"")"),
        R"({"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{"interface-configuration":[{
            "active":"act","interface-name":"E","Halvane-Ombrix-ipv4-io-cfg:ipv4-network":{
            "point-to-point":[null],"mtu":68}}]},"openconfig-interfaces:interfaces":{}})"));

TEST(Printing, LeavesOutEntriesWithoutKeysAndSaysSo) {
  const auto document =
      read(native("\"helper-addresses\":{\"helper-address\":[{\"address\":\"a\"}"
                  ",{\"vrf-name\":\"v\",\"address\":\"b'c\"}]}"));
  EXPECT_EQ(print(document, Format::kTree),
            native_tree("      helper-addresses\n"
                        "        helper-address [address=\"a\"][no vrf-name]\n"
                        "          address = \"a\"\n"
                        "        helper-address [address=\"b'c\"][vrf-name=\"v\"]\n"
                        "          address = \"b'c\"\n          vrf-name = \"v\"\n"));
  const std::string note =
      "note: an entry without its keys is left out (the formats tree and calls show it): "
      "/interface-configurations/interface-configuration\n";
  EXPECT_EQ(print(document, Format::kJson),
            "{\n  \"Halvane-Ombrix-ifmgr-cfg:interface-configurations\": {}\n}\n" + note);
  EXPECT_EQ(
      print(document, Format::kXml),
      "<interface-configurations xmlns=\"urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg\"/>\n" + note);
  const auto& entry = document.roots[0].children[0].children[0].children[0].children[1];
  EXPECT_EQ(instance_path({&entry}), "/helper-address[address=\"b'c\"][vrf-name='v']");
}

TEST(Printing, BringsNodesOfOneNameTogether) {
  auto document = read(unknown("<x>1</x><x nc:operation='delete'/><y/>"), Encoding::kXml);
  std::swap(document.roots[0].children[1], document.roots[0].children[2]);
  EXPECT_EQ(print(document, Format::kJson),
            "{\n  \"urn:x:a\": {\n    \"x\": \"1\",\n    \"x\": [null],\n    \"@x\": {\n"
            "      \"ietf-netconf:operation\": \"delete\"\n    },\n    \"y\": \"\"\n  }\n}\n");
}

TEST(Printing, EmptyAndNone) {
  EXPECT_EQ(print({}, Format::kJson), "{}\n");
  EXPECT_EQ(print({}, Format::kXml) + print({}, Format::kTree), "");
  auto document = read(oc(""));
  document.roots[0].operation = Operation::kNone;
  EXPECT_EQ(print(document, Format::kTree), "openconfig-interfaces:interfaces (none)\n");
  EXPECT_EQ(print(document, Format::kXml), "");
  EXPECT_EQ(print(document, Format::kJson), "{}\n");
}

class Paths : public testing::TestWithParam<Case> {};
TEST_P(Paths, NameOneNode) {
  EXPECT_EQ(result_of([] {
              return print(read_path(models(), GetParam().given, Operation::kDelete),
                           Format::kTree);
            }),
            GetParam().expected);
}

// The reason why a path is refused, behind the path.
Case refused(const std::string& path, const std::string& reason) {
  return {path, path + ": " + reason};
}

INSTANTIATE_TEST_SUITE_P(
    All, Paths,
    testing::Values(
        Case{"/interfaces/interface", oc_tree("  interface [no keys] (delete)\n")},
        Case{"/openconfig-interfaces:interfaces/interface[ name = 'a]/\"b' ]/config/mtu",
             oc_tree("  interface [name=\"a]/\\\"b\"]\n    name = \"a]/\\\"b\"\n"
                     "    config\n      mtu (delete)\n")},
        Case{"/interfaces/interface[name=\"'\"]/name",
             oc_tree("  interface [name=\"'\"]\n    name = \"'\" (delete)\n")},
        Case{"/interface-configurations/interface-configuration[interface-name='E'][active='a']"
             "/ipv4-network",
             "Halvane-Ombrix-ifmgr-cfg:interface-configurations\n"
             "  interface-configuration [active=\"a\"][interface-name=\"E\"]\n    active = \"a\"\n"
             "    interface-name = \"E\"\n    Halvane-Ombrix-ipv4-io-cfg:ipv4-network (delete)\n"},
        refused("interfaces", "the path does not begin with \"/\""),
        refused("/", "no name after \"/\""),
        refused("/none:interfaces", "no such module: \"none\""),
        refused("/interfaces/ipv5", "no such node: \"ipv5\" in /interfaces"),
        refused("/interfaces/interface/config", "no keys for /interfaces/interface"),
        refused("/interfaces/interface[1]", "\"1\" after \"/interfaces/interface[\" is not a name"),
        refused("/interfaces/interface[nam='x']", "\"nam\" is not a key of /interfaces/interface"),
        refused("/interfaces/interface[name='x'][name='x']",
                "key \"name\" of /interfaces/interface is given twice"),
        refused("/interface-configurations/interface-configuration[active='a']",
                "key \"interface-name\" of /interface-configurations/interface-configuration is "
                "missing"),
        refused("/interfaces/interface[name='x\"]",
                "the quotes around the value of \"name\" are not closed"),
        refused("/interfaces[name='x']", "/interfaces is not a list")));

TEST(Merging, JoinsEntriesWithTheSameKeys) {
  auto document =
      read(oc(R"("interface":[{"name":"E","state":{},"config":{"mtu":1}},{"name":"F"},{}])"));
  merge_document(document, read(oc(R"("interface":[{"name":"E","config":{"mtu":2,"x":1}},)"
                                   R"({"name":"G"},{}],"y":1)")));
  merge_document(document, read_path(models(), "/interfaces/interface[name='F']/name"));
  merge_document(document, read_path(models(), "/interfaces/interface[name='F']/config"));
  EXPECT_EQ(print(document, Format::kTree),
            oc_tree("  interface [name=\"E\"]\n    name = \"E\"\n    config\n"
                    "      mtu = \"2\"\n      x = \"1\"\n    state\n"
                    "  interface [name=\"F\"]\n    name = \"F\"\n    name\n    config\n"
                    "  interface [no keys]\n  interface [name=\"G\"]\n    name = \"G\"\n"
                    "  interface [no keys]\n  y = \"1\"\n"));
}

TEST(Merging, RefusesWhatIsDeletedAndWritten) {
  const auto written = oc(R"("interface":[{"name":"E","config":{"mtu":1}}])");
  for (const auto& [path, place] : {
           std::pair{"/interfaces/interface[name='E']/config/mtu",
                     "/interfaces/interface[name='E']/config/mtu"},
           {"/interfaces/interface[name='E']/config", "/interfaces/interface[name='E']/config"},
           {"/interfaces", "/interfaces"},
           {"/interfaces/interface[name='F']", ""},
           {"/interfaces/interface", ""},
       }) {
    for (const bool deleted_first : {false, true}) {
      auto first = read(written);
      auto second = read_path(models(), path, Operation::kDelete);
      if (deleted_first) std::swap(first, second);
      EXPECT_EQ(result_of([&] {
                  merge_document(first, second);
                  return std::string();
                }),
                *place == '\0' ? std::string()
                               : std::string(place) + ": deleted and written in one request");
    }
  }
}

TEST(ModelsFolder, AnswersForEveryNode) {
  const auto* entry = models().child(models().child(nullptr, "interface-configurations", ""),
                                     "interface-configuration", "");
  EXPECT_EQ(Models::keys(entry), (std::vector<std::string>{"active", "interface-name"}));
  const auto children = models().children(entry);
  for (std::size_t at = 0; at < children.size(); ++at) {
    EXPECT_EQ(Models::position(children[at]), at);
    EXPECT_EQ(Models::is_key(children[at]), at < 2);
    const auto module_namespace = Models::module_namespace(children[at]);
    EXPECT_EQ(models().child(entry, Models::tag(children[at]), module_namespace), children[at]);
    EXPECT_EQ(models().namespace_of(Models::module(children[at])), module_namespace);
    EXPECT_EQ(models().module_of(module_namespace), Models::module(children[at]));
  }
  EXPECT_EQ(models().child(entry, "ipv4-network", ""), nullptr);  // of another module
  EXPECT_EQ(models().namespace_of("none"), "");
  const auto* interface =
      models().child(models().child(nullptr, "interfaces", ""), "interface", "");
  EXPECT_TRUE(Models::is_state(models().child(interface, "state", "")));
  EXPECT_FALSE(Models::is_state(models().child(interface, "config", "")));
}

TEST(ModelsFolder, IsNamedWhenItCannotBeLoaded) {
  const auto folder = std::filesystem::path(testing::TempDir()) / "ocifip-models";
  const auto load = [&] { return result_of([&] { return Models(folder).context() ? "" : "?"; }); };
  const auto start = "cannot load the models in " + folder.string() + ": ";
  std::filesystem::remove_all(folder);
  EXPECT_EQ(load(), start + "No such file or directory");
  std::filesystem::create_directory(folder);
  EXPECT_EQ(load(), start + "no modules there");
  std::ofstream(folder / "a.yang") << "module a { namespace a; prefix a; leaf l { type t; } }";
  EXPECT_EQ(load(), start + "a: Referenced type \"t\" not found. (/a:l)");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace ocifip
