// That the coverage leaves nothing out, and what the plug-in gives it no occasion to find; what it
// says of single leaves is held by the mapping reference.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core_fixture.h"
#include "io_testing.h"
#include "mapping/read_back_probe.h"
#include "ocifip/host.h"

namespace ocifip {
namespace {

// Paths of the leaves at and below a schema node; those of its own module go without a prefix.
void append_leaves(const lysc_node* node, const std::string& parent, std::string_view module,
                   std::vector<std::string>& paths) {
  const bool is_own = Models::module(node) == module;
  const std::string path = parent + '/' + (is_own ? "" : std::string(Models::module(node)) + ':') +
                           std::string(Models::tag(node));
  const auto children = models().children(node);
  if (children.empty()) {
    paths.push_back(path);
  }
  for (const lysc_node* child : children) {
    append_leaves(child, path, Models::module(node), paths);
  }
}

TEST(Coverage, HasEachLeafOfTheSchemaOnceAndInItsOrder) {
  std::vector<std::string> expected;
  append_leaves(
      models().child(nullptr, "interfaces", models().namespace_of("openconfig-interfaces")), "", "",
      expected);
  std::erase_if(expected, [](const std::string& path) {
    return !path.starts_with(
        "/openconfig-interfaces:interfaces/interface/subinterfaces/subinterface/openconfig-if-ip:");
  });
  std::vector<std::string> actual;
  for (const LeafCoverage& leaf :
       Host({OCIFIP_PLUGIN, OCIFIP_MODELS_DIR, {}, false}).coverage().leaves) {
    actual.push_back(leaf.path);
  }
  EXPECT_EQ(actual, expected);
}

TEST(Coverage, IsATableThatFitsATerminal) {
  const std::string native = "/m:tops" + repeat("/node", 40);
  Coverage coverage;
  coverage.leaves.push_back({"/x:y", {LeafUse::Result::kMapped, {native}, {}}, {}, {}, {}});
  EXPECT_EQ(coverage.text(Format::kTree),
            "LEAF  EDIT     READ     READ-BACK\n"
            "/x:y  mapped   ignored  nothing\n"
            "    m:tops" +
                repeat("/node", 21) + "/\n        node" + repeat("/node", 18) + " (edit)\n");
}

TEST(Coverage, ShowsAReadOfConfigurationThatIsAnother) {
  const LeafUse mapped = {LeafUse::Result::kMapped, {"/m:a/b:c"}, {}};
  const LeafUse refused = {LeafUse::Result::kRefused, {}, "unsupported"};
  const Coverage coverage = {
      {{"/x:y", {}, mapped, refused, mapped}, {"/x:z", mapped, mapped, {}, mapped}}};
  EXPECT_EQ(coverage.text(Format::kTree),
            "LEAF  EDIT     READ     READ-BACK\n"
            "/x:y  ignored  mapped   mapped\n"
            "    read-config refused: unsupported\n"
            "    b:c (read, read-back)\n"
            "/x:z  mapped   mapped   mapped\n"
            "    b:c\n");
  EXPECT_EQ(coverage.text(Format::kJson),
            R"([
  {"path":"/x:y","edit":{"result":"ignored"},"read":{"result":"mapped","native":["/m:a/b:c"]},)"
            R"("read-config":{"result":"refused","code":"unsupported"},)"
            R"("read-back":{"result":"mapped","native":["/m:a/b:c"]}},
  {"path":"/x:z","edit":{"result":"mapped","native":["/m:a/b:c"]},)"
            R"("read":{"result":"mapped","native":["/m:a/b:c"]},)"
            R"("read-back":{"result":"mapped","native":["/m:a/b:c"]}}
]
)");
}

// A plug-in to which native packet counters say something only when there are both of them.
cerrno count_packets(yfw_map_ctx* ctx, const InputNode* node, nidl_yfw_datatree* out) {
  const InputNode* received = find_child(*node, "in-pkts");
  if (received != nullptr && find_child(*node, "out-pkts") != nullptr) {
    return yfw_map_datatree_add_path_flagged(ctx, out, (kSubinterface + "/ipv4/state/mtu").c_str(),
                                             kIfIp, received->value, nullptr, nullptr, 0,
                                             YFW_MAP_PATH_PLAIN);
  }
  const auto children = children_of(*node);
  return children.empty() ? kOk : count_packets(ctx, &children.back(), out);
}

TEST(Coverage, FindsWhatALeafAddsToItsSiblings) {
  constexpr const char* kSummary = "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v4ma-oper";
  std::vector<const lysc_node*> path;
  for (const char* tag : {"ocifipv4ma", "interfaces", "interface", "subinterfaces", "subinterface",
                          "ipv4", "ipv4-state", "counters", "in-pkts"}) {
    path.push_back(models().child(path.empty() ? nullptr : path.back(), tag, kSummary));
  }
  PathCache paths(models());
  Probes probes(models());
  const AugmentEntries none;
  const Framework framework{models(), paths, none};
  const ReadBackEntries entries{.trees = {{kSummary, "ocifipv4ma", count_packets}}};
  const ReadBackProbe probe(framework, entries, probes);
  const auto tags_from = [&](const char* counter) {
    path.back() = models().child(path[path.size() - 2], counter, kSummary);
    std::set<std::string> tags;
    for (const WrittenNode& node : probe.written_from(path)) tags.insert(node.place->tag);
    return tags;
  };
  EXPECT_EQ(tags_from("in-pkts"), std::set<std::string>{"mtu"});
  EXPECT_EQ(tags_from("out-pkts"), std::set<std::string>{"mtu"});
  EXPECT_EQ(tags_from("out-octets"), std::set<std::string>{});
}

}  // namespace
}  // namespace ocifip
