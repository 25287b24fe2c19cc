// Documents and instance paths: read, joined and printed; and the models that they are read by.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "cases.h"
#include "io/check_input.h"
#include "io/data_path.h"
#include "io/models.h"
#include "io/read_document.h"
#include "io/select_data.h"
#include "io/text.h"
#include "io/xml_printer.h"
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
TEST(Reading, GivesTreeOrReason) {
  for (const char* file : {"json.txt", "json-errors.txt", "xml.txt"}) {
    for (const auto& each : cases::read(std::string(OCIFIP_CASES) + file)) {
      EXPECT_EQ(tree_of(each["given"]), each["expected"]) << each.where;
    }
  }
}

TEST(Messages, RepeatWhatTheyAreAboutInPart) {
  const std::string most = repeat("\u00e9", 200);
  EXPECT_EQ(in_quotes(most), '"' + most + '"');
  EXPECT_EQ(in_quotes(most + "x\n"), '"' + most + "\"...");
  EXPECT_EQ(in_quotes("a\n\"b\xff"), R"("a\n\"b)"
                                     "\ufffd\"");
  EXPECT_EQ(in_short("a\n\"b\""), R"(a\n"b")");
  EXPECT_EQ(in_short(most + 'x'), most + "...");
  // A sentence may be longer, but not what it quotes, nor a word.
  EXPECT_EQ(
      in_one_line("so\n, " + most + "x \"a " + most + "\", " + most + " \"" + most + " \n"),
      "so\\n, " + most + "... \"a " + repeat("\u00e9", 198) + "...\", " + most + " \"" + most);
  EXPECT_EQ(result_of([&] {
              read_path(models(), '/' + most);
              return "";
            }),
            '/' + repeat("\u00e9", 199) + "...: " + in_quotes(most) + " after \"/\" is not a name");
  EXPECT_EQ(result_of([&] {
              read_document(models(), {most + "\n", "", Encoding::kJson});
              return "";
            }),
            most + "...:1: the text is empty");
}

// A name without a module is one of its parent's, else one of the only other module that has it.
TEST(Reading, FindsTheModuleThatFits) {
  const Folder folder;
  folder.write(
      "a.yang",
      "module a { namespace urn:a; prefix a; container top { leaf own { type string; } } }");
  for (const std::string name : {"b", "c"}) {
    folder.write(name + ".yang", "module " + name + " { namespace urn:" + name + "; prefix " +
                                     name + "; import a { prefix a; } container only-" + name +
                                     "; container both; augment /a:top { leaf both { type string; }"
                                     " leaf own { type string; } leaf of-" +
                                     name + " { type string; } } }");
  }
  const Models fitting(folder.path());
  const auto tree = [&](const std::string& text) {
    const auto encoding = text.starts_with('<') ? Encoding::kXml : Encoding::kJson;
    return result_of([&] {
      return print(read_document(fitting, {"in", text, encoding}), Format::kTree);
    });
  };
  const std::string all = "a:top\n  own = \"1\"\n  b:of-b = \"2\"\n  c:of-c = \"3\"\n";
  EXPECT_EQ(tree(R"({"top": {"own": "1", "of-b": "2", "of-c": "3"}})"), all);
  EXPECT_EQ(tree("<top><own xmlns='urn:a'>1</own><of-b>2</of-b><of-c>3</of-c></top>"), all);
  EXPECT_EQ(tree(R"({"only-c": {}})"), "c:only-c\n");
  EXPECT_EQ(tree("<only-c/>"), "c:only-c\n");
  const std::string either = "in:1: \"both\" needs a module: it is in b and in c";
  for (const char* text :
       {R"({"both": {}})", R"({"top": {"both": "1"}})", "<both/>", "<top><both/></top>"}) {
    EXPECT_EQ(tree(text), either) << text;
  }
  EXPECT_EQ(tree("<top><own/></top>"), "in:1: \"own\" needs a module: it is in a and in b");
  EXPECT_EQ(tree("<top xmlns='urn:a'><of-b/></top>"), "a:top\n  of-b = \"\"\n");
}

TEST(Reading, EndsAtADepth) {
  const std::string nodes = "in:1: nodes are nested deeper than 256 levels";
  EXPECT_EQ(tree_of(repeat("{\"a\":", 1000000)), nodes);
  EXPECT_EQ(tree_of(repeat("{\"a\":", 257) + "1" + repeat("}", 257)), nodes);
  EXPECT_EQ(tree_of("<a xmlns='urn:x'>" + repeat("<b>", 256) + repeat("</b>", 256) + "</a>"),
            nodes);
  EXPECT_EQ(tree_of(oc("\"@\":{\"yang:value\":" + repeat("[", 1000000))),
            "in:1: nested too deeply");
}

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

TEST(Printing, HasAFormForEachFormat) {
  for (const auto& each : cases::read(OCIFIP_CASES "printing.txt")) {
    SCOPED_TRACE(each.where);
    const auto document = read(each[each.has("given") ? "given" : "json"]);
    for (const auto& [name, format] :
         {std::pair("json", Format::kJson), {"xml", Format::kXml}, {"tree", Format::kTree}}) {
      EXPECT_EQ(each.has(name) ? print(document, format) : "", each[name]);
    }
  }
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

TEST(Printing, QuotesKeysInPaths) {
  const auto document = read_path(models(), "/interfaces/interface[name=\"b'c\"]");
  EXPECT_EQ(instance_path({&document.roots[0].children[0]}), "/interface[name=\"b'c\"]");
}

TEST(Printing, BringsNodesOfOneNameTogether) {
  auto document = read("<a xmlns='urn:x' " + kNc + "><x>1</x><x nc:operation='delete'/><y/></a>",
                       Encoding::kXml);
  std::swap(document.roots[0].children[1], document.roots[0].children[2]);
  EXPECT_EQ(print(document, Format::kJson),
            "{\n  \"urn:x:a\": {\n    \"x\": \"1\",\n    \"x\": [null],\n    \"@x\": {\n"
            "      \"ietf-netconf:operation\": \"delete\"\n    },\n    \"y\": \"\"\n  }\n}\n");
}

TEST(Printing, TheOperationNone) {
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

// By all keys of an entry, and by one.
TEST(Selecting, FindsAnAddressHoweverItIsWritten) {
  const auto neighbors = [](const std::string& entries) {
    return read_document(models(), {"test",
                                    R"({"Halvane-Ombrix-ipv6-nd-cfg:ipv6-neighbor":{"neighbors":
                                       {"neighbor":[)" +
                                        entries + "]}}}",
                                    Encoding::kJson});
  };
  const std::string wanted = R"({"neighbor-address":"2001:DB8::9","interface-name":"Eth1"})";
  const auto data =
      neighbors(wanted + R"(,{"neighbor-address":"2001:db8::a","interface-name":"Eth1"})");
  for (const char* interface : {R"(,"interface-name":"Eth1")", ""}) {
    const auto query =
        neighbors(R"({"neighbor-address":"2001:db8:0::9")" + std::string(interface) + "}");
    EXPECT_EQ(print(select_data(data, query), Format::kTree),
              print(neighbors(wanted), Format::kTree));
  }
}

// Interfaces, and ARP entries of two nodes, of which one has few: of what is large, a node is
// selected at a time.
Document of_many() {
  std::string interfaces;
  std::string arp;
  for (int i = 0; i < 400; ++i) {
    const std::string name =
        (i == 0 ? "{" : ",{") + (R"("interface-name":"Eth)" + std::to_string(i));
    interfaces += name + R"(","active":"act","description":"of )" + std::to_string(i % 7) + "\"}";
    arp += name + R"(","address":"192.0.2.1","age":"1","state":"state-dynamic"})";
  }
  const std::string few = arp.substr(0, arp.find('}') + 1);
  const auto node = [](const std::string& name, const std::string& entries) {
    return R"({"node-name":")" + name + R"(","entries":{"entry":[)" + entries + "]}}";
  };
  return read(
      R"({"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{"interface-configuration":[)" +
      interfaces + R"(]},"Halvane-Ombrix-ipv4-arp-oper:arp":{"nodes":{"node":[)" +
      node("node0", few) + "," + node("node1", arp) + "]}}}");
}

std::string print_parts(const Document& data, const Document& query,
                        SelectionInSteps::Terms terms) {
  SelectionInSteps selection(data, query, terms);
  std::vector<std::string> notes;
  XmlPrinter printer(notes);
  for (bool goes_on = true; goes_on;) {
    std::vector<SelectedPart> parts;
    goes_on = selection.go_on(SelectionInSteps::Clock::time_point::min(), parts);
    EXPECT_LE(parts.size(), 5U);
    for (auto& part : parts) {
      if (part.kind == SelectedPart::Kind::kNodes) printer.add(part.nodes);
      if (part.kind == SelectedPart::Kind::kBegin) printer.begin(std::move(part.nodes.front()));
      if (part.kind == SelectedPart::Kind::kEnd) printer.end();
    }
  }
  return printer.take();
}

TEST(Selecting, InStepsIsTheSame) {
  const Document data = of_many();
  Document configuration = {"configuration", {data.roots.front()}};
  const std::string interfaces =
      R"(<interface-configurations xmlns="urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg">)";
  const std::string arp = R"(<arp xmlns="urn:halvane:yang:Halvane-Ombrix-ipv4-arp-oper">)";
  const auto entry = [](const std::string& content) {
    return "<interface-configuration>" + content + "</interface-configuration>";
  };
  const auto nodes = [&](const std::string& content) {
    return arp + "<nodes><node>" + content + "</node></nodes></arp>";
  };
  const std::string ends = "</interface-configurations>";
  for (const auto& query : {
           interfaces + ends + arp + "</arp>",
           interfaces + entry("<description>of 3</description>") + ends,
           interfaces + entry("<description>of 3</description>") +
               entry("<interface-name>Eth3</interface-name><active/>") + ends,
           interfaces + entry("<description>of 3</description><interface-name/>") + ends,
           interfaces + entry("<description/>") + ends + nodes("<node-name>node0</node-name>"),
           interfaces + entry("<mtus/>") + ends + nodes("<traffic-node/>"),
           nodes("<node-name/>"),
           nodes("<node-name>node1</node-name><entries><entry><interface-name>Eth7</interface-name>"
                 "</entry></entries>"),
           nodes("<entries><entry><age>2</age></entry></entries>"),
       }) {
    SCOPED_TRACE(query);
    const Document asked =
        read_document(models(), {"filter", "<config>" + query + "</config>", Encoding::kXml},
                      DocumentUse::kFilter);
    ASSERT_FALSE(asked.roots.empty());
    std::vector<std::string> notes;
    EXPECT_EQ(print_parts(data, asked, {.values_choose = true, .with_state = true}),
              print_elements(select_chosen(data, asked), notes));
    EXPECT_EQ(print_parts(data, asked, {.values_choose = false, .with_state = true}),
              print_elements(select_data(data, asked), notes));
    EXPECT_EQ(print_parts(data, asked, {.values_choose = true, .with_state = false}),
              print_elements(select_chosen(configuration, asked), notes));
  }
}

TEST(Merging, JoinsDocuments) {
  const auto joined = [](const std::string& lines) {
    Document document;
    for (const std::string& line : cases::lines_of(lines)) {
      merge_document(document, line[0] == '{' ? read(line)
                               : line[0] == '-'
                                   ? read_path(models(), line.substr(1), Operation::kDelete)
                                   : read_path(models(), line));
    }
    return print(document, Format::kTree);
  };
  for (const auto& each : cases::read(OCIFIP_CASES "merging.txt")) {
    EXPECT_EQ(result_of([&] { return joined(each["joined"]); }), each["expected"]) << each.where;
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

// What the check of some interfaces alone relies on.
TEST(ModelsFolder, NativeDataIsNotWrongForWhatStandsElsewhere) {
  for (const auto* node : models().children(nullptr)) {
    if (!Models::module(node).starts_with("Halvane-")) continue;
    EXPECT_FALSE(models().has_far_constraints(node)) << Models::tag(node);
  }
  // Its keys are references.
  EXPECT_TRUE(models().has_far_constraints(models().child(nullptr, "interfaces", "")));
}

// Whatever module defines the type, and behind references, too.
TEST(ModelsFolder, TellsWhatIsNamedByIpv6Addresses) {
  const auto is_named = [](std::initializer_list<const char*> path) {
    const lysc_node* node = nullptr;
    for (const auto* tag : path) {
      const auto children = models().children(node);
      node = *std::find_if(children.begin(), children.end(),
                           [tag](const auto* child) { return Models::tag(child) == tag; });
    }
    return Models::names_by_ipv6(node);
  };
  const auto is_named_on_interface = [&](const char* family, const char* leaf) {
    return is_named({"interfaces", "interface", "subinterfaces", "subinterface", family,
                     "neighbors", "neighbor", leaf});
  };
  EXPECT_TRUE(is_named_on_interface("ipv6", "ip"));
  EXPECT_FALSE(is_named_on_interface("ipv6", "config"));
  EXPECT_FALSE(is_named_on_interface("ipv4", "ip"));
  EXPECT_FALSE(is_named({"interfaces", "interface", "name"}));
  EXPECT_TRUE(is_named({"ipv6-neighbor", "neighbors", "neighbor", "neighbor-address"}));
  EXPECT_FALSE(is_named({"ipv6-neighbor", "neighbors", "neighbor", "interface-name"}));
  // Only what names something.
  EXPECT_FALSE(is_named({"ipv6-neighbor", "neighbors", "neighbor", "mac-address"}));
  EXPECT_TRUE(
      is_named({"interfaces", "interface", "subinterfaces", "subinterface", "ipv6", "addresses",
                "address", "vrrp", "vrrp-group", "config", "virtual-address"}));
  EXPECT_FALSE(Models::names_by_ipv6(nullptr));
}

// As modules are published: with their revisions in the names of their files, identities and
// features that others use, submodules, and patterns with the anchors of POSIX.
TEST(ModelsFolder, MayHoldPublishedModules) {
  const Models published(OCIFIP_CASES "../published");
  EXPECT_EQ(Models::module(published.child(nullptr, "boxes", {})), "boxes");
  const auto check = [&](const std::string& leaf) {
    return result_of([&] {
      auto document =
          read_document(published, {"in", R"({"boxes:boxes":{)" + leaf + "}}", Encoding::kJson});
      check_against_models(published, document, InputUse::kEdit);
      return "taken";
    });
  };
  for (const char* taken :
       {R"("kind":"kinds:LARGE")", R"("key":"x")", R"("code":"ab")", R"("lid":"round")"}) {
    EXPECT_EQ(check(taken), "taken") << taken;
  }
  for (const char* refused :
       {R"("code":"^ab$")", R"("code":"abc")", R"("lid":"oval")", R"("end":"5")"}) {
    EXPECT_NE(check(refused), "taken") << refused;
  }
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
  EXPECT_EQ(load(), start + "Referenced type \"t\" not found. (/a:l)");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace ocifip
