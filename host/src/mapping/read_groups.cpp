#include "mapping/read_groups.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "device/subinterface_name.h"
#include "mapping/interface_nodes.h"

namespace ocifip {
namespace {

bool is_interface(const DocumentNode& node) {
  return node.schema != nullptr && is_named(node, kInterfacesModule, "interface");
}

bool has_only_interfaces(const DocumentNode& root) {
  return root.schema != nullptr && is_named(root, kInterfacesModule, "interfaces") &&
         std::all_of(root.children.begin(), root.children.end(), is_interface);
}

bool ask_for_interfaces(const std::vector<Document>& reads) {
  return std::all_of(reads.begin(), reads.end(), [](const Document& read) {
    return std::all_of(read.roots.begin(), read.roots.end(), has_only_interfaces);
  });
}

// The interfaces of the device, each with its native names, and those that reads ask for.
class Interfaces {
 public:
  explicit Interfaces(const std::vector<std::string>& native_names) {
    for (const std::string& name : native_names) {
      std::string interface = subinterface_of(name).interface;
      std::vector<std::string>& names = names_[interface];
      if (names.empty()) order_.push_back(std::move(interface));
      names.push_back(name);
    }
  }

  void ask(const DocumentNode& root) {
    if (root.children.empty()) ask_for_all();
    for (const DocumentNode& entry : root.children) {
      const std::string* name = key_value(entry, "name");
      if (name == nullptr) {
        ask_for_all();
      } else {
        ask(*name);
      }
    }
  }

  [[nodiscard]] std::vector<ReadGroup> groups(std::size_t size) const {
    std::vector<ReadGroup> groups;
    std::size_t count = size;
    for (const std::string& interface : asked_) {
      if (count >= size) {
        groups.emplace_back();
        count = 0;
      }
      ReadGroup& group = groups.back();
      group.interfaces.insert(interface);
      ++count;
      const auto known = names_.find(interface);
      if (known == names_.end()) continue;
      count += known->second.size() - 1;
      group.native_names.insert(group.native_names.end(), known->second.begin(),
                                known->second.end());
    }
    return groups;
  }

 private:
  void ask(const std::string& interface) {
    if (is_asked_.insert(interface).second) asked_.push_back(interface);
  }

  void ask_for_all() {
    for (const std::string& interface : order_) ask(interface);
  }

  std::unordered_map<std::string, std::vector<std::string>> names_;
  std::vector<std::string> order_;
  std::vector<std::string> asked_;
  std::unordered_set<std::string> is_asked_;
};

bool is_in(const DocumentNode& entry, const ReadGroup& group) {
  const std::string* name = key_value(entry, "name");
  return name != nullptr && group.interfaces.contains(*name);
}

}  // namespace

std::vector<ReadGroup> read_groups(const std::vector<Document>& reads,
                                   const std::vector<std::string>& native_names, std::size_t size) {
  if (!ask_for_interfaces(reads)) return {};
  Interfaces interfaces(native_names);
  for (const Document& read : reads) {
    for (const DocumentNode& root : read.roots) interfaces.ask(root);
  }
  return interfaces.groups(size);
}

std::vector<Document> reads_of(const ReadGroup& group, const std::vector<Document>& reads) {
  std::vector<Document> parts;
  for (const Document& read : reads) {
    Document& part = parts.emplace_back(Document{read.name, {}});
    for (const DocumentNode& root : read.roots) {
      DocumentNode asked = bare(root);
      for (const DocumentNode& entry : root.children) {
        if (key_value(entry, "name") == nullptr || is_in(entry, group)) {
          asked.children.push_back(entry);
        }
      }
      // Without an entry, it would stand for all interfaces.
      if (root.children.empty() || !asked.children.empty()) part.roots.push_back(std::move(asked));
    }
  }
  return parts;
}

bool is_of_group(const Document& reply, const ReadGroup& group) {
  if (reply.roots.empty()) return true;
  return reply.roots.size() == 1 && has_only_interfaces(reply.roots.front()) &&
         std::all_of(reply.roots.front().children.begin(), reply.roots.front().children.end(),
                     [&](const DocumentNode& entry) { return is_in(entry, group); });
}

}  // namespace ocifip
