#include "mapping_test.h"

#include <cstdlib>
#include <map>
#include <sstream>
#include <stdexcept>

#include "yfw/text.h"

namespace recording {

Tree Tree::in(const char* module) const {
  Tree tree = *this;
  tree.module_namespace = module;
  return tree;
}

Tree Tree::with(nidl_yfw_edit_oper other) const {
  Tree tree = *this;
  tree.operation = other;
  return tree;
}

Tree Tree::with_all(nidl_yfw_edit_oper other) const {
  Tree tree = with(other);
  for (Tree& child : tree.children) {
    child = child.with_all(other);
  }
  return tree;
}

Tree node(const char* tag, std::vector<Tree> children) {
  return {.tag = tag, .value = {}, .children = std::move(children)};
}

Tree leaf(const char* tag, std::optional<std::string> value) {
  return {.tag = tag, .value = std::move(value), .children = {}};
}

Tree broken(const char* tag, std::uint32_t claimed) {
  Tree tree = node(tag);
  tree.flags = NIDL_YFW_FLAG_HAS_SUBTREE;
  tree.lost_children = claimed;
  return tree;
}

namespace {

class TreeReader {
 public:
  explicit TreeReader(const std::string& text) : text_(text) {}

  // A node with all below it. What it does not say is as in its parent.
  Tree read(const Tree& parent) {
    static const std::map<std::string, const char*> modules = {
        {"ip", kIfIp},
        {"interfaces", kInterfaces},
        {"foreign", kForeign},
        {"ipv4-io-cfg", "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg"},
        {"ifmgr-cfg", "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg"},
        {"ipv4-io-oper", "urn:halvane:yang:Halvane-Ombrix-ipv4-io-oper"},
        {"v4ma", "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v4ma-oper"},
        {"v6ma", "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v6ma-oper"}};
    Tree tree = node(take_until("@!?={} ").c_str());
    if (tree.tag == "-") tree.tag.reset();
    tree.module_namespace = take('@') ? modules.at(take_until("!?={} ")) : parent.module_namespace;
    tree.operation = take('!') ? operation_of(take_until("?={} ")) : parent.operation;
    if (take('?')) {
      tree.flags = NIDL_YFW_FLAG_HAS_SUBTREE;
      tree.lost_children = static_cast<std::uint32_t>(std::stoi(take_until("={} ")));
    }
    if (take('=')) tree.value = take('"') ? take_until("\"") : take_until("{} ");
    take('"');
    if (take('{')) {
      while (!take('}')) {
        tree.children.push_back(read(tree));
        take(' ');
      }
    }
    return tree;
  }

 private:
  std::string take_until(const char* ends) {
    if (at_ == text_.size()) throw std::runtime_error("no node: " + text_);
    const std::size_t begin = at_;
    at_ = std::min(text_.find_first_of(ends, at_), text_.size());
    return text_.substr(begin, at_ - begin);
  }
  bool take(char wanted) {
    const bool is_there = at_ < text_.size() && text_[at_] == wanted;
    at_ += is_there ? 1 : 0;
    return is_there;
  }

  const std::string& text_;
  std::size_t at_ = 0;
};

}  // namespace

Tree tree_of(const std::string& text) { return TreeReader(text).read(node("")); }

nidl_yfw_edit_oper operation_of(const std::string& name) {
  static const std::map<std::string, nidl_yfw_edit_oper> operations = {
      {"write", NIDL_YFW_EDIT_WRITE},
      {"replace", NIDL_YFW_EDIT_REPLACE},
      {"delete", NIDL_YFW_EDIT_DELETE},
      {"remove", NIDL_YFW_EDIT_REMOVE},
      {"none", NIDL_YFW_EDIT_NONE}};
  return operations.at(name);
}

void replace_all(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string calls(const std::string& text) {
  std::string all = text.empty() ? "" : text + "\n";
  replace_all(all, "; ", "\n");
  return all;
}

std::string lines_of(const std::string& function) {
  std::string lines;
  std::istringstream all(platform.recorded(kLines));
  for (std::string line; std::getline(all, line);) {
    const std::string name = line.substr(4, line.find(' ', 4) - 4);
    lines += name == function ? line.erase(4, name.size() + 1) + "\n" : "";
  }
  return lines;
}

MappingTest::MappingTest() {
  ctx.debug_filter = &platform;
  ctx.error_channel = &platform.faults;
  ctx.trace_channel = &platform.log;
  ctx.trace_buffer = &platform.buffer;
  ctx.trace_buffer_on = 1;
  ctx.request_state = &state;
  platform.interfaces.clear();
  begin_request(YFW_MAP_REQUEST_MERGE);
}

MappingTest::~MappingTest() { end_request(); }

void MappingTest::begin_request(std::uint32_t request_op) {
  auto interfaces = std::move(platform.interfaces);
  platform = {};
  platform.interfaces = std::move(interfaces);
  platform.root = &out;
  state = {};
  state.list_entry_reuse = 1;
  state.visited_entries = &platform.visited;
  std::string("Eth1").copy(state.current_ifname, sizeof state.current_ifname);
  request(request_op);
}

void MappingTest::end_request() {
  std::free(state.address_db);
  std::free(state.vrrp_vip_db);
  std::free(state.unsupported_tag);
  std::free(state.error_message);
}

void MappingTest::next(std::uint32_t request_op) {
  TearDown();
  end_request();
  begin_request(request_op);
}

void MappingTest::TearDown() {
  for (const std::string& fault : platform.faults) {
    ADD_FAILURE() << fault;
  }
  EXPECT_TRUE(platform.hierarchy.empty());
  EXPECT_TRUE(platform.output_list.empty());
  EXPECT_TRUE(platform.visited.nodes.empty());
  EXPECT_EQ(platform.lists_alive, 0);
  EXPECT_EQ(state.list_entry_reuse, 1);
  EXPECT_EQ(state.output_list_depth, 0);
}

const char* MappingTest::kept(const std::optional<std::string>& text) {
  return text ? texts_.emplace_back(*text).c_str() : nullptr;
}

Node MappingTest::made(const Tree& tree) {
  Node made{};
  made.tag = kept(tree.tag);
  made.value = kept(tree.value);
  made.module_namespace = tree.module_namespace;
  made.edit_operation = tree.operation;
  made.kind = tree.kind;
  unsigned flags = tree.flags;
  if (tree.value) {
    flags |= NIDL_YFW_FLAG_HAS_VALUE;
  }
  made.child_count = tree.lost_children;
  if (!tree.children.empty()) {
    std::vector<Node> children;
    for (const Tree& child : tree.children) {
      children.push_back(this->made(child));
    }
    flags |= NIDL_YFW_FLAG_HAS_SUBTREE;
    made.child_count = static_cast<std::uint32_t>(children.size());
    made.children = arrays_.emplace_back(std::move(children)).data();
  }
  made.flags = static_cast<std::uint8_t>(flags);
  return made;
}

Node* MappingTest::plant(const Tree& tree) {
  return &arrays_.emplace_back(std::vector{made(tree)}).front();
}

static std::string shown(const char* text) { return text != nullptr ? text : "-"; }

std::string MappingTest::refused_tag() const { return shown(state.unsupported_tag); }

std::string MappingTest::error_message() const { return shown(state.error_message); }

}  // namespace recording
