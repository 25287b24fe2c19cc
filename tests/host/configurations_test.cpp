// Configurations as values: edits of both views, reads in steps, and what configurations differ in.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cases.h"
#include "io/read_document.h"
#include "io_testing.h"
#include "mapping/native_input.h"
#include "ocifip/host.h"
#include "result_codes.h"

namespace ocifip {
namespace {

const std::string kNetconf = "urn:ietf:params:xml:ns:netconf:base:1.0";

// An interface's entry of the native models.
std::string entry(const std::string& name, const std::string& content) {
  return R"({"active":"act","interface-name":")" + name + "\"" + content + "}";
}

std::string network(const std::string& address) {
  return R"(,"Halvane-Ombrix-ipv4-io-cfg:ipv4-network":{"addresses":{"primary":{"address":")" +
         address + R"(","netmask":"255.255.255.0"}}})";
}

std::string device_of(const std::string& entries) {
  return R"({"node":"n","native":{"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{)"
         R"("interface-configuration":[)" +
         entries + "]}}}";
}

const std::string kDevice =
    device_of(entry("Eth1", R"(,"description":"one")" + network("10.0.0.1")) + "," +
              entry("Eth2", R"(,"description":"two")" + network("10.0.1.1")));

class Configurations : public testing::Test {
 protected:
  std::unique_ptr<Host> host_of(const std::string& device) const {
    return std::make_unique<Host>(HostOptions{.plugin = OCIFIP_PLUGIN,
                                              .models = OCIFIP_MODELS_DIR,
                                              .device = folder.write("dev.json", device)});
  }

  static Source source(const std::string& content) {
    return {"in", content, content.starts_with('<') ? Encoding::kXml : Encoding::kJson};
  }

  // What is read, and the notes behind it.
  std::string read(const Configuration& configuration, const QueryRequest& request) {
    const auto reading = host->read(configuration, request);
    while (reading->step()) {
    }
    const Outcome outcome = reading->finish();
    return outcome.refusal ? outcome.refusal->text() : outcome.text;
  }

  std::string filtered(const Configuration& configuration, const std::string& filter,
                       Content content = Content::kConfig) {
    QueryRequest request;
    request.document = source("<filter xmlns=\"" + kNetconf + "\">" + filter + "</filter>");
    request.content = content;
    request.values_choose = true;
    return result_of([&] { return read(configuration, request); });
  }

  Change change(const Configuration& base, const std::string& document,
                std::optional<DefaultOperation> operation = std::nullopt) {
    EditRequest request;
    request.document = source(document);
    request.operation = operation;
    return host->change(base, request);
  }

  std::string changes(const Configuration& before, const Configuration& after) {
    std::string text;
    for (const ChangedNode& node : host->changes(before, after)) {
      text += node.kind == ChangedNode::Kind::kCreated   ? "+ "
              : node.kind == ChangedNode::Kind::kDeleted ? "- "
                                                         : "~ ";
      text += node.path.text + '\n';
    }
    return text;
  }

  Folder folder;
  std::unique_ptr<Host> host = host_of(kDevice);
};

std::string read_text(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// What programs are told of the error that a function throws.
template <typename Function>
std::string fault_of(const Function& function) {
  static const std::vector<std::string> kKinds = {
      "other",         "malformed", "unknown node", "unknown namespace", "unknown attribute",
      "bad attribute", "bad value", "missing node", "not saved"};
  try {
    function();
  } catch (const InputError& error) {
    const InputFault& fault = error.fault();
    std::string text = kKinds.at(static_cast<std::size_t>(fault.kind));
    if (!fault.tag.empty()) text += ' ' + fault.tag;
    if (!fault.path.empty()) text += ' ' + fault.path;
    return text + ": " + fault.reason;
  }
  return "no error";
}

// The root of the native configuration as XML.
std::string native_xml(const std::string& content) {
  return "<interface-configurations xmlns=\"urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg\">" +
         content + "</interface-configurations>";
}

// The text with one thing in the place of another, wherever it is.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

// Paths as the cases have them.
std::string shortened(std::string text) {
  for (const char* module : {"Halvane-Ombrix-ifmgr-cfg:", "Halvane-Ombrix-ipv4-io-cfg:",
                             "openconfig-interfaces:", "openconfig-if-ip:"}) {
    text = replaced(replaced(text, "/" + std::string(module), "/"), "[" + std::string(module), "[");
  }
  const std::string way = "/interface-configurations/interface-configuration";
  text = replaced(text, way + "[active='act'][interface-name='Eth1']", "{Eth1}");
  const std::string interface = "/interfaces/interface[name='Eth1']/subinterfaces";
  const bool is_error = text.starts_with("in:");
  return is_error ? text : replaced(text, interface + "/subinterface[index='0']", "{Eth1/0}");
}

// The document of a case.
std::string document_of(const cases::Case& each) {
  std::string text = each["roots"];
  const auto add = [&text](const std::string& root) { text += (text.empty() ? "" : ",") + root; };
  if (each.has("native")) {
    add(R"("Halvane-Ombrix-ifmgr-cfg:interface-configurations":{"interface-configuration":[)" +
        entry("Eth1", "," + each["native"]) + "]}");
  }
  if (each.has("ipv4")) {
    add(R"("openconfig-interfaces:interfaces":{"interface":[{"name":"Eth1","subinterfaces":{)"
        R"("subinterface":[{"index":0,"openconfig-if-ip:ipv4":{)" +
        each["ipv4"] + "}}]}}]}");
  }
  return "{" + text + "}";
}

std::optional<DefaultOperation> operation_of(const cases::Case& each) {
  using enum DefaultOperation;
  const std::string name = each["operation"];
  if (name == "none") return kNone;
  if (name == "create") return kCreate;
  return name == "replace" ? std::optional(kReplace) : std::nullopt;
}

TEST_F(Configurations, AreEditedInBothViews) {
  const std::string same =
      "the OpenConfig part and the native part of the edit both change it (0x40802600 same-node)";
  for (const auto& each : cases::read(OCIFIP_CASES "configuration-edits.txt")) {
    const Configuration base = each["base"] == "empty" ? host->empty() : host->running();
    const std::string text = result_of([&] {
      const Change made = change(base, document_of(each), operation_of(each));
      std::string lines;
      for (const Refusal& refusal : made.refusals) lines += refusal.text() + '\n';
      EXPECT_EQ(made.result.has_value(), made.refusals.empty()) << each.where;
      if (made.result) lines += changes(base, *made.result);
      for (const std::string& note : made.notes) lines += "note: " + note + '\n';
      return lines;
    });
    const std::string expected = replaced(each["expected"], "SAME", same);
    const std::string found = shortened(
        text.ends_with('\n') && !expected.ends_with('\n') ? text.substr(0, text.size() - 1) : text);
    EXPECT_EQ(found, expected) << each.where;
  }
}

// Siblings in one line: "item{name=n} size=1".
std::string flat(const std::vector<DocumentNode>& nodes) {
  std::string text;
  for (const auto& node : nodes) {
    const bool is_leaf = node.kind == NodeKind::kLeaf || node.kind == NodeKind::kLeafList;
    text += text.empty() ? "" : " ";
    text += node.tag + (is_leaf ? "=" + node.value.value_or("?") : "{" + flat(node.children) + "}");
  }
  return text;
}

TEST_F(Configurations, AreChosenFromByValues) {
  const std::string interfaces = "http://openconfig.net/yang/interfaces";
  for (const auto& each : cases::read(OCIFIP_CASES "filters.txt")) {
    std::string filter = each["filter"];
    if (each.has("native")) {
      filter =
          native_xml("<interface-configuration>" + each["native"] + "</interface-configuration>");
    } else if (each.has("entry")) {
      filter = "<interfaces xmlns=\"" + interfaces + "\"><interface>" + each["entry"] +
               "</interface></interfaces>";
    }
    const std::string text = filtered(host->running(), filter);
    const std::string data = "<data xmlns=\"" + kNetconf + "\">" + text + "</data>";
    std::string found = flat(read_document(models(), source(data)).roots);
    if (each.has("native") && !found.empty()) {
      found = replaced(found.substr(found.find('{') + 1), "interface-configuration{", "{");
      found.pop_back();
    }
    EXPECT_EQ(found, each["expected"]) << each.where << text;
  }
}

// What has no namespace of a choice, or no document, is all that there is, state aside.
TEST_F(Configurations, AreReadAsAWhole) {
  host =
      host_of(R"({"node":"n","native":{"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{
      "interface-configuration":[)" +
              entry("Eth1", network("10.0.0.1")) +
              R"(]},"Halvane-Ombrix-ipv4-arp-oper:arp":{"nodes":{"node":[{"node-name":"n"}]}}}})");
  const auto count = [&](const QueryRequest& request, const std::string& text) {
    const std::string all = read(host->running(), request);
    return (all.size() - replaced(all, text, "").size()) / text.size();
  };
  QueryRequest request;
  EXPECT_EQ(count(request, "<interface-name>Eth1<"), 1U);
  EXPECT_EQ(count(request, "<prefix-length>24<"), 2U);
  EXPECT_EQ(count(request, "<node-name>n<"), 1U);
  request.content = Content::kConfig;
  EXPECT_EQ(count(request, "<interface-name>Eth1<"), 1U);
  EXPECT_EQ(count(request, "<prefix-length>24<"), 1U);
  EXPECT_EQ(count(request, "<node-name>n<"), 0U);
  request.paths = {"/interface-configurations"};
  EXPECT_EQ(count(request, "<interface-name>Eth1<"), 1U);
  EXPECT_EQ(count(request, "<prefix-length>24<"), 0U);
}

TEST_F(Configurations, FollowEachOther) {
  const auto description = [](const std::string& name, const std::string& text) {
    return native_xml("<interface-configuration><active>act</active><interface-name>" + name +
                      "</interface-name><description>" + text +
                      "</description></interface-configuration>");
  };
  const Configuration former = host->running();
  EXPECT_TRUE(former == host->running());
  const Configuration first = *change(former, description("Eth1", "a")).result;
  const Configuration second = *change(first, description("Eth2.5", "b")).result;
  EXPECT_TRUE(*change(second, description("Eth1", "a")).result == second);
  EXPECT_EQ(host->validate(second), std::nullopt);
  // With the modules of its nodes, each once.
  const auto changed = host->changes(first, second);
  ASSERT_EQ(changed.size(), 2U);
  EXPECT_EQ(changed[0].path.text,
            "/Halvane-Ombrix-ifmgr-cfg:interface-configurations/Halvane-Ombrix-ifmgr-cfg:"
            "interface-configuration[Halvane-Ombrix-ifmgr-cfg:active='act']"
            "[Halvane-Ombrix-ifmgr-cfg:interface-name='Eth2.5']");
  EXPECT_EQ(changed[0].path.modules, std::vector<std::string>{"Halvane-Ombrix-ifmgr-cfg"});
  EXPECT_EQ(changed[1].path.text,
            "/openconfig-interfaces:interfaces/openconfig-interfaces:interface"
            "[openconfig-interfaces:name='Eth2']/openconfig-interfaces:subinterfaces/"
            "openconfig-interfaces:subinterface[openconfig-interfaces:index='5']");
  const std::string file = folder.path() / "dev.json";
  host->commit(second, true);
  EXPECT_TRUE(host->running() == second);
  EXPECT_NE(read_text(file).find("Eth2.5"), std::string::npos);
  host->commit(former, false);
  EXPECT_EQ(changes(host->running(), former), "");
  EXPECT_NE(read_text(file).find("Eth2.5"), std::string::npos);
  // It runs, but is not in the file yet.
  host->commit(former, true);
  EXPECT_EQ(read_text(file).find("Eth2.5"), std::string::npos);
  EXPECT_EQ(folder.write("dev.json", "{}"), file);
  EXPECT_EQ(fault_of([&] { host->commit(first, true); }),
            "not saved: cannot be saved: it was changed since it was read");
  EXPECT_TRUE(host->running() == former);
  // It is in the file as far as the host knows.
  host->commit(former, true);
}

// A read goes on with the configuration that it began with.
TEST_F(Configurations, StayAsTheyAreWhileTheyAreRead) {
  const auto count_steps = [this](int size, const std::string& content,
                                  const QueryRequest& request) {
    std::string entries;
    for (int i = 0; i < size; ++i) {
      entries += (i == 0 ? "" : ",") + entry("Eth" + std::to_string(i), content);
    }
    host = host_of(device_of(entries));
    const std::string whole = read(host->running(), request);
    EXPECT_NE(whole.find(">Eth" + std::to_string(size - 1) + "<"), std::string::npos);
    auto reading = host->read(host->running(), request);
    int steps = 1;
    for (bool is_first = true; reading->step(); is_first = false) {
      steps += 1;
      if (!is_first) continue;
      host->commit(host->empty(), false);
      EXPECT_EQ(read(host->running(), {}), "");
      // Its mapper is not kept for the sake of others.
      for (int i = 0; i < 4; ++i) read(host->empty(), {});
    }
    EXPECT_TRUE(reading->finish().text == whole);
    return steps;
  };
  // Three groups of subinterfaces; some milliseconds for the native models.
  const QueryRequest openconfig = {.document = {}, .paths = {"/openconfig-interfaces:interfaces"}};
  EXPECT_EQ(count_steps(450, network("10.0.0.1"), openconfig), 3);
  EXPECT_GE(count_steps(450, network("10.0.0.1"), {}), 4);
  EXPECT_GT(count_steps(50000, "", {.document = {}, .paths = {"/interface-configurations"}}), 1);
}

TEST_F(Configurations, AreRefusedAsAWhole) {
  host = host_of(R"({"native":{"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{
      "interface-configuration":[{"active":"act","interface-name":"Eth1","mtus":{"mtu":[
      {"owner":"a","mtu":-1}]}}]}}})");
  const auto refusal = host->validate(host->running());
  ASSERT_TRUE(refusal.has_value());
  EXPECT_EQ(shortened(refusal->path), "{Eth1}/mtus/mtu[owner='a']/mtu");
  EXPECT_EQ(result_name(refusal->code), "invalid-data");
}

TEST_F(Configurations, HaveFaultsForPrograms) {
  const auto fault = [&](const std::string& document) {
    return fault_of([&] { change(host->running(), document); });
  };
  const std::string top = "/interface-configurations";
  const std::string mtu = top +
                          "/interface-configuration[active='act'][interface-name='E']"
                          "/mtus/mtu[owner='a']/mtu";
  EXPECT_EQ(fault("<a/><b/>"),
            "malformed: not valid XML: Extra content at the end of the document");
  EXPECT_EQ(fault("{"),
            "malformed: not valid JSON: unexpected end of input; expected string literal");
  EXPECT_EQ(fault(native_xml("<a/>")),
            "unknown node a " + top + "/a: unknown node \"a\" below " + top);
  EXPECT_EQ(fault(R"({"x:y":1})"),
            "unknown namespace y /y: unknown module of node \"x:y\" at the top");
  EXPECT_EQ(fault(native_xml("<interface-configuration a=\"b\"/>")),
            "unknown attribute a " + top +
                "/interface-configuration: unknown attribute \"a\", at " + top +
                "/interface-configuration");
  EXPECT_EQ(fault(R"({"Halvane-Ombrix-ifmgr-cfg:interface-configurations":{)"
                  R"("interface-configuration":[)" +
                  entry("E", R"(,"mtus":{"mtu":[{"owner":"a","mtu":"b"}]})") + "]}}"),
            "bad value mtu " + mtu + ": \"b\" is not a number from 0 to 4294967295, at " + mtu);
  EXPECT_EQ(fault_of([&] {
              host->change(host->running(),
                           {.document = {}, .deletes = {"/interfaces/interface/config"}});
            }),
            "missing node name /interfaces/interface: no keys for /interfaces/interface");
}

// No model of the device has state inside of its configuration.
TEST(NativeEdits, HaveNoState) {
  const auto models = models_of("m.yang", R"(module m { yang-version 1.1; namespace "urn:m";
      prefix m; container c { leaf a { type string; } container s { config false;
      leaf b { type string; } } } })");
  Document edit = read_document(*models, {"in", R"({"m:c":{"a":"x",
      "s":{"b":"y"}}})",
                                          Encoding::kJson});
  EXPECT_EQ(fault_of([&] { check_native_edit(*models, edit); }),
            "bad value s /c/s: \"s\" is state, which cannot be edited, at /c/s");
}

// A path in short may be that of another node.
TEST(Paths, HaveTheModulesOfTheirNodes) {
  const Host host({.plugin = OCIFIP_PLUGIN, .models = OCIFIP_MODELS_DIR});
  const DataPath path =
      host.data_path("/interfaces/interface[name=\"a']/b\"]/subinterfaces/unknown/index");
  EXPECT_EQ(path.text,
            "/openconfig-interfaces:interfaces/openconfig-interfaces:interface"
            "[openconfig-interfaces:name=\"a']/b\"]/openconfig-interfaces:subinterfaces");
  EXPECT_EQ(path.modules, std::vector<std::string>{"openconfig-interfaces"});
  EXPECT_EQ(host.data_path("/interfaces/interface[name='aaa...']").text, "");
  EXPECT_EQ(host.data_path("/interfaces/interface[name='a\\u0001']").text, "");
}

TEST(Modules, AreToldOf) {
  const Host host({.plugin = OCIFIP_PLUGIN, .models = OCIFIP_MODELS_DIR});
  const auto modules = host.modules();
  const auto is_before = [](const Module& left, const Module& right) {
    return left.is_implemented != right.is_implemented ? left.is_implemented
                                                       : left.name < right.name;
  };
  EXPECT_TRUE(std::is_sorted(modules.begin(), modules.end(), is_before));
  const auto found = std::find_if(modules.begin(), modules.end(), [](const Module& module) {
    return module.name == "Halvane-Ombrix-ifmgr-cfg";
  });
  ASSERT_NE(found, modules.end());
  EXPECT_EQ(found->revision, "2026-11-21");
  EXPECT_EQ(found->name_space, "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg");
  EXPECT_TRUE(found->is_implemented);
  const std::string text = read_text(OCIFIP_MODELS_DIR "/Halvane-Ombrix-ifmgr-cfg.yang");
  EXPECT_EQ(host.module_text(found->name, ""), text);
  EXPECT_EQ(host.module_text(found->name, found->revision), text);
  EXPECT_EQ(host.module_text(found->name, "2020-01-01"), std::nullopt);
  EXPECT_EQ(host.module_text("nobody", ""), std::nullopt);
  EXPECT_EQ(host.module_text("ietf-inet-types", "").value_or("").substr(0, 22),
            "module ietf-inet-types");
}

}  // namespace
}  // namespace ocifip
