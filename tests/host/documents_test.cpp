// Documents and instance paths: read, joined and printed; and the models that they are read by.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "cases.h"
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

TEST(Reading, GivesTreeOrReason) {
  for (const char* file : {"json.txt", "json-errors.txt", "xml.txt"}) {
    for (const auto& each : cases::read(std::string(OCIFIP_CASES) + file)) {
      EXPECT_EQ(tree_of(each["given"]), each["expected"]) << each.where;
    }
  }
}

TEST(Reading, EndsAtADepth) {
  const std::string nodes = "in:1: nodes are nested deeper than 256 levels";
  EXPECT_EQ(tree_of(repeat("{\"a\":", 1000000)), nodes);
  EXPECT_EQ(tree_of(repeat("{\"a\":", 257) + "1" + repeat("}", 257)), nodes);
  EXPECT_EQ(tree_of("<a xmlns='urn:x'>" + repeat("<b>", 256) + repeat("</b>", 256) + "</a>"),
            nodes);
  EXPECT_EQ(tree_of(oc("\"@\":{\"b:c\":" + repeat("[", 1000000))), "in:1: nested too deeply");
}

const std::string kOc = R"(xmlns="http://openconfig.net/yang/interfaces")";
const std::string kNc = R"(xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0")";

// Text that is no XML is refused with libxml2's reason; the line is what counts here.
TEST(Reading, RefusesMalformedXmlWithItsLine) {
  for (const auto& each : cases::read(OCIFIP_CASES "malformed-xml.txt")) {
    const auto reason = tree_of(each["given"]);
    const auto start = "in" + each["expected"] + ": not valid XML: ";
    EXPECT_EQ(reason.substr(0, start.size()), start) << each.where;
    EXPECT_GT(reason.size(), start.size()) << each.where;
  }
}

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
TEST(Printing, IsReadAsTheSameDocument) {
  for (const auto& each : cases::read(OCIFIP_CASES "round-trips.txt")) {
    const auto document = read(each["given"]);
    EXPECT_FALSE(document.roots.empty()) << each.where;
    for (const auto& [format, encoding] :
         {std::pair(Format::kJson, Encoding::kJson), std::pair(Format::kXml, Encoding::kXml)}) {
      const auto printed = print(document, format);
      EXPECT_EQ(all_of(read(printed, encoding)), all_of(document)) << printed;
    }
  }
}

TEST(Printing, LeavesOutEntriesWithoutKeysAndSaysSo) {
  const auto document =
      read(native("\"helper-addresses\":{\"helper-address\":[{\"address\":\"a\"}"
                  ",{\"vrf-name\":\"v\",\"address\":\"b'c\"}]}"));
  EXPECT_EQ(print(document, Format::kTree),
            "Halvane-Ombrix-ifmgr-cfg:interface-configurations\n"
            "  interface-configuration [no keys]\n"
            "    Halvane-Ombrix-ipv4-io-cfg:ipv4-network\n"
            "      helper-addresses\n"
            "        helper-address [address=\"a\"][no vrf-name]\n"
            "          address = \"a\"\n"
            "        helper-address [address=\"b'c\"][vrf-name=\"v\"]\n"
            "          address = \"b'c\"\n          vrf-name = \"v\"\n");
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
  auto document = read("<a xmlns='urn:x' " + kNc + "><x>1</x><x nc:operation='delete'/><y/></a>",
                       Encoding::kXml);
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

TEST(Paths, NameOneNode) {
  for (const auto& each : cases::read(OCIFIP_CASES "paths.txt")) {
    EXPECT_EQ(result_of([&] {
                return print(read_path(models(), each["given"], Operation::kDelete), Format::kTree);
              }),
              each["expected"])
        << each.where;
  }
}

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
