// The project's OpenConfig modules, held against the nodes of the published ones
// (openconfig-nodes.tsv): name, module, kind, keys, access and type.

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

std::string kind_of(const lysc_node& node) { return lys_nodetype2str(node.nodetype); }

// The name of a leaf's type as the module writes it.
std::string type_of(const lysc_node& node) {
  const auto* parsed = static_cast<const lysp_node*>(node.priv);
  if (node.nodetype == LYS_LEAF) return reinterpret_cast<const lysp_node_leaf*>(parsed)->type.name;
  if (node.nodetype == LYS_LEAFLIST) {
    return reinterpret_cast<const lysp_node_leaflist*>(parsed)->type.name;
  }
  return "-";
}

std::string keys_of(const lysc_node& list) {
  std::string keys;
  for (const lysc_node* child = lysc_node_child(&list); child != nullptr; child = child->next) {
    if (lysc_is_key(child)) keys += (keys.empty() ? "" : " ") + std::string(child->name);
  }
  return keys.empty() ? "-" : keys;
}

// The nodes from one on down, a line each in the columns of the published list.
void append(const lysc_node& node, const std::string& parent, Lines& lines) {
  const std::string path = parent + '/' + node.name;
  lines.push_back(path + '\t' + node.module->name + '\t' + kind_of(node) + '\t' + keys_of(node) +
                  '\t' + ((node.flags & LYS_CONFIG_W) != 0 ? "rw" : "ro") + '\t' + type_of(node));
  for (const lysc_node* child = lysc_node_child(&node); child != nullptr; child = child->next) {
    append(*child, path, lines);
  }
}

Lines project_nodes() {
  ly_ctx* made = nullptr;
  EXPECT_EQ(ly_ctx_new(OCIFIP_MODELS_DIR, LY_CTX_SET_PRIV_PARSED, &made), LY_SUCCESS);
  const std::unique_ptr<ly_ctx, void (*)(ly_ctx*)> context(made, ly_ctx_destroy);
  const lys_module* interfaces = nullptr;
  for (const char* name : {"openconfig-if-ip", "openconfig-if-ip-ext", "openconfig-if-tunnel",
                           "openconfig-interfaces"}) {
    interfaces = ly_ctx_load_module(made, name, nullptr, nullptr);
    EXPECT_NE(interfaces, nullptr) << name;
  }
  Lines lines;
  append(*interfaces->compiled->data, "", lines);
  return lines;
}

Lines published_nodes() {
  std::ifstream file(OCIFIP_PUBLISHED_NODES);
  Lines lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  EXPECT_GT(lines.size(), 600u);
  return lines;
}

// The lines of nodes below a path.
std::set<std::string> below(const Lines& lines, const std::string& path) {
  std::set<std::string> found;
  std::copy_if(lines.begin(), lines.end(), std::inserter(found, found.end()),
               [&](const std::string& line) { return line.starts_with(path + '/'); });
  return found;
}

Lines difference(const std::set<std::string>& left, const std::set<std::string>& right) {
  Lines only;
  std::set_difference(left.begin(), left.end(), right.begin(), right.end(),
                      std::back_inserter(only));
  return only;
}

TEST(Published, HaveEveryNodeOfTheProjectsModules) {
  const Lines published = published_nodes();
  const Lines own = project_nodes();
  EXPECT_EQ(difference({own.begin(), own.end()}, {published.begin(), published.end()}), Lines());
}

TEST(Published, AreAllThereWhereIpIsMapped) {
  const std::string subinterface = "/interfaces/interface/subinterfaces/subinterface";
  for (const std::string& path : {subinterface + "/ipv4", subinterface + "/ipv6"}) {
    EXPECT_EQ(difference(below(published_nodes(), path), below(project_nodes(), path)), Lines());
  }
}

}  // namespace
