// Configurations as values: edits of both views, reads in steps, and what configurations differ in.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cases.h"
#include "io_testing.h"
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
    return std::make_unique<Host>(
        HostOptions{.plugin = OCIFIP_PLUGIN,
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
      text += node.path + '\n';
    }
    return text;
  }

  Folder folder;
  std::unique_ptr<Host> host = host_of(kDevice);
};

// The root of the native configuration as XML, and that of OpenConfig.
std::string native_xml(const std::string& content) {
  return "<interface-configurations xmlns=\"urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg\">" +
         content + "</interface-configurations>";
}

TEST_F(Configurations, Smoke) {
  std::cout << read(host->running(), {}) << "\n=====\n";
  std::cout << filtered(host->running(), native_xml("<interface-configuration><description>two</description></interface-configuration>"));
  std::cout << "====\n" << filtered(host->running(), "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface><subinterfaces><subinterface><ipv4 xmlns='http://openconfig.net/yang/interfaces/ip'><addresses><address><config><ip>10.0.1.1</ip><prefix-length/></config></address></addresses></ipv4></subinterface></subinterfaces></interface></interfaces>");
  Change c = change(host->running(), "<config xmlns='" + kNetconf + "'>" + native_xml("<interface-configuration><active>act</active><interface-name>Eth1</interface-name><description>x</description></interface-configuration><interface-configuration><active>act</active><interface-name>Eth2.20</interface-name><description>x</description></interface-configuration>") +
  "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface><name>Eth1</name><subinterfaces><subinterface><index>0</index><ipv4 xmlns='http://openconfig.net/yang/interfaces/ip'><addresses><address><ip>10.0.0.2</ip><config><ip>10.0.0.2</ip><prefix-length>24</prefix-length></config></address></addresses></ipv4></subinterface></subinterfaces></interface></interfaces></config>");
  for (auto& r : c.refusals) std::cout << r.text() << "\n";
  std::cout << "===\n" << c.native_edit << "===\n" << c.difference;
  if (c.result) std::cout << changes(host->running(), *c.result);
}

}  // namespace
}  // namespace ocifip
