#include "announcements.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <string_view>

#include "names.h"
#include "xml.h"

namespace ocifip::agent {
namespace {

constexpr std::array<std::string_view, 12> kCapabilities = {
    kBase10,
    kBase11,
    "urn:ietf:params:netconf:capability:writable-running:1.0",
    "urn:ietf:params:netconf:capability:candidate:1.0",
    "urn:ietf:params:netconf:capability:confirmed-commit:1.0",
    "urn:ietf:params:netconf:capability:confirmed-commit:1.1",
    "urn:ietf:params:netconf:capability:rollback-on-error:1.0",
    "urn:ietf:params:netconf:capability:validate:1.0",
    "urn:ietf:params:netconf:capability:validate:1.1",
    "urn:ietf:params:netconf:capability:xpath:1.0",
    "urn:ietf:params:netconf:capability:notification:1.0",
    "urn:ietf:params:netconf:capability:interleave:1.0",
};

std::string top_tag(std::string_view name, std::string_view name_space) {
  return "<" + std::string(name) + " xmlns=\"" + std::string(name_space) + "\">";
}

// What changes when the modules do: FNV-1a of their names, revisions and features.
std::string content_id(const Modules& modules) {
  std::uint64_t hash = 0xcbf29ce484222325;
  const auto add = [&hash](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    hash = (hash ^ 0xff) * 0x100000001b3;
  };
  for (const Module& module : modules) {
    add(module.name);
    add(module.revision);
    for (const std::string& feature : module.features) add(feature);
  }
  std::array<char, 17> text{};
  std::snprintf(text.data(), text.size(), "%016" PRIx64, hash);
  return text.data();
}

// NAMESPACE?module=NAME&revision=REVISION&features=A,B
std::string capability_of(const Module& module) {
  std::string text = module.name_space + "?module=" + module.name;
  if (!module.revision.empty()) text += "&revision=" + module.revision;
  std::string separator = "&features=";
  for (const std::string& feature : module.features) {
    text += separator + feature;
    separator = ",";
  }
  return text;
}

std::string library_entry(const Module& module) {
  const std::string tag = module.is_implemented ? "module" : "import-only-module";
  std::string text = "<" + tag + ">" + element("name", module.name);
  if (!module.revision.empty() || !module.is_implemented) {
    text += element("revision", module.revision);
  }
  text += element("namespace", module.name_space);
  if (module.is_implemented) {
    for (const std::string& feature : module.features) text += element("feature", feature);
  }
  return text + "</" + tag + ">";
}

std::string library_datastore(std::string_view name) {
  return "<datastore><name xmlns:ds=\"" + std::string(kDatastores) + "\">ds:" + std::string(name) +
         "</name><schema>all</schema></datastore>";
}

std::string schema_entry(const Module& module) {
  return "<schema>" + element("identifier", module.name) + element("version", module.revision) +
         "<format>yang</format>" + element("namespace", module.name_space) +
         "<location>NETCONF</location></schema>";
}

std::string datastore_entry(Datastore datastore, const Datastores& datastores) {
  std::string text = "<datastore>" + element("name", name_of(datastore));
  if (const auto& lock = datastores.lock_of(datastore)) {
    text += "<locks><global-lock>" + element("locked-by-session", std::to_string(lock->holder)) +
            element("locked-time", date_and_time(lock->since)) + "</global-lock></locks>";
  }
  return text + "</datastore>";
}

std::string counters_of(const Counters& counters) {
  return element("in-rpcs", std::to_string(counters.in_rpcs)) +
         element("in-bad-rpcs", std::to_string(counters.in_bad_rpcs)) +
         element("out-rpc-errors", std::to_string(counters.out_rpc_errors)) +
         element("out-notifications", std::to_string(counters.out_notifications));
}

std::string session_entry(const Client& client) {
  return "<session>" + element("session-id", std::to_string(client.id)) +
         "<transport>netconf-ssh</transport>" + element("username", client.user.name) +
         element("login-time", date_and_time(client.login)) + counters_of(client.counters) +
         "</session>";
}

}  // namespace

std::string date_and_time(std::chrono::system_clock::time_point time) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text.data();
}

std::vector<std::string> capabilities(const Modules& modules) {
  std::vector<std::string> all(kCapabilities.begin(), kCapabilities.end());
  all.push_back(
      "urn:ietf:params:netconf:capability:yang-library:1.1?revision=2019-01-04&content-id=" +
      content_id(modules));
  for (const Module& module : modules) {
    if (module.is_implemented) all.push_back(capability_of(module));
  }
  return all;
}

std::string hello(const Modules& modules, SessionId session) {
  std::string text = top_tag("hello", kBase) + "<capabilities>";
  for (const std::string& each : capabilities(modules)) text += element("capability", each);
  return text + "</capabilities>" + element("session-id", std::to_string(session)) + "</hello>";
}

Elements yang_library(const Modules& modules) {
  Elements text = top_tag("yang-library", kLibrary) + "<module-set><name>all</name>";
  for (const Module& module : modules) text += library_entry(module);
  text += "</module-set><schema><name>all</name><module-set>all</module-set></schema>";
  for (const char* each : {"running", "candidate"}) text += library_datastore(each);
  return text + element("content-id", content_id(modules)) + "</yang-library>";
}

Elements netconf_state(const Modules& modules, const Datastores& datastores, const Clients& clients,
                       const AgentCounters& of_all, std::chrono::system_clock::time_point start) {
  Elements text = top_tag("netconf-state", kMonitoring) + "<capabilities>";
  for (const std::string& each : capabilities(modules)) text += element("capability", each);
  text += "</capabilities><datastores>";
  for (const Datastore each : {Datastore::kRunning, Datastore::kCandidate}) {
    text += datastore_entry(each, datastores);
  }
  text += "</datastores><schemas>";
  for (const Module& module : modules) text += schema_entry(module);
  text += "</schemas><sessions>";
  for (const auto& [id, client] : clients) text += session_entry(client);
  text += "</sessions><statistics>" + element("netconf-start-time", date_and_time(start));
  text += element("in-bad-hellos", std::to_string(of_all.in_bad_hellos)) +
          element("in-sessions", std::to_string(of_all.in_sessions)) +
          element("dropped-sessions", std::to_string(of_all.dropped_sessions));
  return text + counters_of(of_all) + "</statistics></netconf-state>";
}

Elements streams() {
  return top_tag("netconf", kStreams) +
         "<streams><stream><name>NETCONF</name>"
         "<description>what happens to the configuration and to sessions</description>"
         "<replaySupport>false</replaySupport></stream></streams></netconf>";
}

}  // namespace ocifip::agent
