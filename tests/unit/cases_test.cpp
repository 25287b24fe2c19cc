// Callbacks, by cases that stand in text files: what a callback is given, and what it asks of the
// platform. The fields of a case, of which any may be missing:
//
//   call       the callback, behind the `prefix` of its section
//   request    kinds of requests, which must all come to the same; a merge if none is given
//   in         the node, as tree_of() reads it; "(null)" for none
//   inside     the entry that has been visited last, read alike
//   interface  name of the native interface being walked, and `index` of its subinterface; the
//              entries being walked have them as keys, but for those that they `lack`
//   walked     a line for each leaf of other nodes being walked: path of the node, leaf, value if
//              it has one
//   state      of the request, and of its database of addresses: see set()
//   device     a line for each interface: its name and its addresses, the primary first
//   lease      prefix length of the address that is leased
//   output     a line for each entry that it has: list and key
//   fail       a line for each call that fails: service, number and result
//
// What must come of it: the `result`, 0 if none is given; the refused `tag`; the error `message`;
// what the callback, or the function `of`, `says` between its start and its end; and calls, under
// the name of their kind or several joined by "+", as recording_platform.h shows them. There, each
// line of `short` is a name and a text that it stands for.
#include <dlfcn.h>

#include <filesystem>
#include <regex>
#include <set>
#include <stdexcept>

#include "cases.h"
#include "inet/inet.h"
#include "mapping_test.h"
#include "read_back_platform.h"
#include "yfw_map_ifip_util.h"
#include "ymap_database.h"

namespace recording {
namespace {

const std::map<std::string, std::uint32_t> kRequests = {
    {"merge", YFW_MAP_REQUEST_MERGE},
    {"replace", YFW_MAP_REQUEST_REPLACE},
    {"create", YFW_MAP_REQUEST_CREATE},
    {"other-edit", 3},
    {"read-config", YFW_MAP_REQUEST_READ_CONFIG},
    {"read-state", YFW_MAP_REQUEST_READ_STATE}};

const std::map<std::string, unsigned> kKinds = {
    {"writes", kWrites}, {"searches", kSearch}, {"hierarchy", kHierarchy}, {"refusals", kRefusals},
    {"asks", kDevice},   {"texts", kTexts},     {"questions", kQuestions}, {"lines", kLines}};

const std::map<std::string, std::uint32_t ymap::AddressDb::*> kFlags = {
    {"first-of-replace", &ymap::AddressDb::first_is_primary},
    {"deletes-primary", &ymap::AddressDb::entry_is_primary},
    {"is-primary", &ymap::AddressDb::matches_primary},
    {"replaces", &ymap::AddressDb::replace_mode}};

const std::set<std::string> kOtherFields = {
    "section",   "name",  "prefix", "call",   "of",      "request", "in",    "inside",
    "interface", "index", "lack",   "walked", "state",   "device",  "lease", "output",
    "fail",      "short", "result", "tag",    "message", "says"};

Prefix prefix_of(const std::string& text) {
  const std::size_t slash = text.find('/');
  return {text.substr(0, slash), static_cast<std::uint32_t>(std::stoul(text.substr(slash + 1)))};
}

class Callbacks : public MappingTest, public testing::WithParamInterface<std::string> {
 protected:
  // What is done once in a process has been done.
  Callbacks() {
    ymap::AddressText address{};
    std::uint32_t length = 0;
    ymap::get_interface_address(&ctx, "Eth9", address, &length, OMBRIX_AF_INET);
    EXPECT_TRUE(ymap::database_available());
  }

  void run(const cases::Case& given, std::uint32_t request_op) {
    next(request_op);
    prepare_platform(given);
    prepare_state(given);
    const std::string callback = given["prefix"] + given["call"];
    const Node* in =
        given["in"] != "(null)" ? plant(tree_of(given.has("in") ? given["in"] : "x")) : nullptr;
    EXPECT_EQ(call(callback, in),
              given.has("result") ? std::stoul(given["result"], nullptr, 0) : 0);
    compare(given, given.has("of") ? given["prefix"] + given["of"] : callback);
    platform.visited.nodes.clear();
  }

 private:
  void prepare_platform(const cases::Case& given) {
    read_back = {};
    platform.base_names = {{&interface_, "interface"}, {&subinterface_, "subinterface"}};
    platform.created_nodes = {{"/interfaces/interface", &interface_},
                              {"/interfaces/interface/subinterfaces/subinterface", &subinterface_}};
    platform.interfaces.clear();
    for (const std::string& line : cases::lines_of(given["device"])) {
      const auto words = cases::words_of(line);
      Addresses& addresses = platform.interfaces[words[0]];
      for (std::size_t i = 1; i < words.size(); ++i) {
        (i == 1 ? addresses.primary : addresses.secondaries.emplace_back()) = prefix_of(words[i]);
      }
    }
    if (given.has("lease")) {
      read_back.detail.emplace().PrefixLength =
          static_cast<std::uint32_t>(std::stoul(given["lease"]));
      ombrix_inet_aton("10.9.8.7", &read_back.detail->PrimaryAddress);
    }
    for (const std::string& line : cases::lines_of(given["output"])) {
      const bool is_interface = line.starts_with("/interfaces/interface ");
      read_back.entries[line] = is_interface ? &interface_ : &subinterface_;
    }
    for (const std::string& line : cases::lines_of(given["fail"])) {
      const auto words = cases::words_of(line);
      platform.fail(words.at(0), std::stoi(words.at(1)),
                    static_cast<cerrno>(std::stoul(words.at(2), nullptr, 0)));
    }
    if (given.has("inside")) platform.visited.nodes = {plant(tree_of(given["inside"]))};
  }

  void prepare_state(const cases::Case& given) {
    const std::string name = given["interface"];
    const std::string index = given["index"];
    std::snprintf(state.current_ifname, sizeof state.current_ifname, "%s", name.c_str());
    std::snprintf(state.current_subif_index, sizeof state.current_subif_index, "%s", index.c_str());
    auto& leaves = read_back.leaves;
    leaves["/interface-configurations/interface-configuration interface-name"] = name;
    for (const std::string list : {"/ocifipv4ma", "/ocifipv6ma"}) {
      leaves[list + "/interfaces/interface name"] = name;
      leaves[list + "/interfaces/interface/subinterfaces/subinterface index"] = index;
    }
    for (const std::string& key : cases::words_of(given["lack"])) {
      std::erase_if(leaves, [&](const auto& leaf) { return leaf.first.ends_with(" " + key); });
    }
    for (const std::string& line : cases::lines_of(given["walked"])) {
      const auto words = cases::words_of(line);
      leaves[words.at(0) + " " + words.at(1)] = words.size() > 2 ? words[2] : "";
    }
    for (const std::string& word : cases::words_of(given["state"])) {
      const std::size_t equals = std::min(word.find('='), word.size());
      set(word.substr(0, equals), word.substr(std::min(equals + 1, word.size())));
    }
  }

  void set(const std::string& name, const std::string& value) {
    if (name == "list-wide") {
      state.list_wide = 1;
    } else if (name == "list-operation") {
      state.list_edit_op = static_cast<std::uint8_t>(operation_of(value));
    } else if (name == "source") {
      state.request.request_source = static_cast<std::uint32_t>(std::stoul(value));
    } else if (name == "filter") {
      state.request.filter_fields = static_cast<std::uint32_t>(std::stoul(value));
    } else if (name == "length") {  // of the prefix of the current entry
      length_ = value;
      ymap::address_db(&ctx)->prefix_text = length_.c_str();
    } else if (name == "deleted-primary") {  // by an entry before
      ymap::address_db(&ctx)->primary = {1, 24, 1};
    } else {
      ymap::address_db(&ctx)->*kFlags.at(name) = 1;
    }
  }

  cerrno call(const std::string& name, const Node* in) {
    void* callback = dlsym(RTLD_DEFAULT, name.c_str());
    if (callback == nullptr) throw std::runtime_error("no callback " + name);
    const bool counts = name.find("_cont") != name.npos || name.find("_list_lvl") != name.npos;
    const std::uint32_t count = in != nullptr ? in->child_count : 0;
    return counts ? reinterpret_cast<yfw_map_container_callback>(callback)(&ctx, in, count, &out)
                  : reinterpret_cast<yfw_map_leaf_callback>(callback)(&ctx, in, &out);
  }

  void compare(const cases::Case& given, const std::string& function) {
    EXPECT_TRUE(!given.has("tag") || refused_tag() == given["tag"]) << refused_tag();
    EXPECT_EQ(error_message(), given.has("message") ? given["message"] : "-");
    if (given.has("says")) {
      std::string lines = recording::lines_of(function);
      replace_all(lines, "trc Start\n", "");
      replace_all(lines, "trc End\n", "");
      lines = std::regex_replace(lines, std::regex("Line number: [0-9]+"), "Line number: N");
      EXPECT_EQ(lines, given.lines("says"));
    }
    for (const auto& [key, text] : given.fields) {
      unsigned kinds = 0;
      std::string names = key;
      replace_all(names, "+", " ");
      for (const std::string& name : cases::words_of(names)) {
        kinds |= kKinds.count(name) != 0 ? kKinds.at(name) : 0;
      }
      if (kinds != 0) {
        EXPECT_EQ(shortened(platform.recorded(kinds), given), given.lines(key));
      } else {
        EXPECT_TRUE(kOtherFields.count(key) != 0) << key;
      }
    }
  }

  static std::string shortened(std::string text, const cases::Case& given) {
    for (const std::string& line : cases::lines_of(given["short"])) {
      const std::size_t blank = line.find(' ');
      replace_all(text, line.substr(blank + 1), line.substr(0, blank));
    }
    return text;
  }

  Node interface_{};
  Node subinterface_{};
  std::string length_;
};

TEST_P(Callbacks, DoAsTheirCasesSay) {
  for (const cases::Case& each : cases::read(OCIFIP_CASES + GetParam() + ".txt")) {
    const auto requests = cases::words_of(each.has("request") ? each["request"] : "merge");
    for (const std::string& request_kind : requests) {
      SCOPED_TRACE(each.where + " " + each["name"] + " " + request_kind);
      run(each, kRequests.at(request_kind));
    }
  }
}

std::set<std::string> files() {
  std::set<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(OCIFIP_CASES)) {
    names.insert(file.path().stem());
  }
  return names;
}

INSTANTIATE_TEST_SUITE_P(All, Callbacks, testing::ValuesIn(files()), [](const auto& instance) {
  std::string name = instance.param;
  replace_all(name, "-", "_");
  return name;
});

}  // namespace
}  // namespace recording
