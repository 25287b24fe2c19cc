#include "mapping/read_groups.h"

#include <algorithm>
#include <optional>
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

// The interfaces that reads ask for, each with its native names on the device.
class Interfaces {
 public:
  void ask(const DocumentNode& root) {
    if (root.children.empty()) asked_.emplace_back();
    for (const DocumentNode& entry : root.children) {
      const std::string* name = key_value(entry, "name");
      asked_.push_back(name == nullptr ? std::nullopt : std::optional(*name));
    }
  }

  // After all has been asked for.
  void find(const std::vector<std::string>& native_names) {
    std::unordered_set<std::string> names;
    bool asks_for_all = false;
    for (const auto& name : asked_) {
      if (name) names.insert(*name);
      asks_for_all = asks_for_all || !name;
    }
    for (const std::string& name : native_names) {
      std::string interface = subinterface_of(name).interface;
      if (!asks_for_all && !names.contains(interface)) continue;
      std::vector<std::string>& found = names_[interface];
      if (found.empty()) order_.push_back(std::move(interface));
      found.push_back(name);
    }
  }

  [[nodiscard]] std::vector<ReadGroup> groups(std::size_t size) const {
    std::vector<ReadGroup> groups;
    std::size_t count = size;
    for (const std::string& interface : interfaces()) {
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
  // Each once, in the order in which they are asked for.
  [[nodiscard]] std::vector<std::string> interfaces() const {
    std::vector<std::string> all;
    std::unordered_set<std::string> known;
    const auto add = [&](const std::string& interface) {
      if (known.insert(interface).second) all.push_back(interface);
    };
    for (const auto& name : asked_) {
      if (name) {
        add(*name);
      } else {
        std::for_each(order_.begin(), order_.end(), add);
      }
    }
    return all;
  }

  std::vector<std::optional<std::string>> asked_;  // without value: all
  std::unordered_map<std::string, std::vector<std::string>> names_;
  std::vector<std::string> order_;
};

bool is_in(const DocumentNode& entry, const ReadGroup& group) {
  const std::string* name = key_value(entry, "name");
  return name != nullptr && group.interfaces.contains(*name);
}

}  // namespace

std::vector<ReadGroup> read_groups(const std::vector<Document>& reads,
                                   const std::vector<std::string>& native_names, std::size_t size) {
  if (!ask_for_interfaces(reads)) return {};
  Interfaces interfaces;
  for (const Document& read : reads) {
    for (const DocumentNode& root : read.roots) interfaces.ask(root);
  }
  interfaces.find(native_names);
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
