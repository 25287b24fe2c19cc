#include "io/native_configuration.h"

#include <algorithm>
#include <utility>

#include "io/document_nodes.h"
#include "io/models.h"

namespace ocifip {
namespace {

// Requests that go from one interface to the next are answered from all of it in the end.
constexpr std::size_t kMostParts = 16;

void add_entries(const std::vector<DocumentNode>& nodes, std::vector<InterfaceEntry>& entries) {
  for (const DocumentNode& node : nodes) {
    const std::string* key = interface_key(node.schema);
    const std::string* name = key == nullptr ? nullptr : key_value(node, *key);
    if (name == nullptr) {
      add_entries(node.children, entries);
      continue;
    }
    const std::string* active = key_value(node, "active");
    entries.push_back({node.schema, *name, active == nullptr || *active == "act"});
  }
}

}  // namespace

void InterfaceNames::add(const InterfaceNames& others) {
  natives_.insert(others.natives_.begin(), others.natives_.end());
  interfaces_.insert(others.interfaces_.begin(), others.interfaces_.end());
}

bool InterfaceNames::contains(std::string_view native_name) const {
  if (!natives_.empty() && natives_.contains(native_name)) return true;
  return !interfaces_.empty() && interfaces_.contains(native_name.substr(0, native_name.find('.')));
}

bool InterfaceNames::contains(const InterfaceNames& others) const {
  return std::all_of(others.natives_.begin(), others.natives_.end(),
                     [this](const std::string& name) { return contains(name); }) &&
         std::all_of(others.interfaces_.begin(), others.interfaces_.end(),
                     [this](const std::string& name) { return interfaces_.contains(name); });
}

const std::string* interface_key(const lysc_node* list) {
  if (list == nullptr || Models::kind(list) != NodeKind::kList) return nullptr;
  const auto& keys = Models::keys(list);
  const auto found = std::find_if(keys.begin(), keys.end(), [](const std::string& key) {
    return key == "interface-name" || key == "interface";
  });
  return found == keys.end() ? nullptr : &*found;
}

const Document& NativeConfiguration::whole() const {
  if (!read_->whole) read_->whole = std::make_shared<const Document>(text_->read_all());
  return *read_->whole;
}

const Document& NativeConfiguration::with_lines() const {
  if (!text_) return whole();
  if (!read_->with_lines) {
    read_->with_lines = std::make_shared<const Document>(text_->read_exactly());
  }
  return *read_->with_lines;
}

const Document& NativeConfiguration::part(const InterfaceNames& interfaces) const {
  if (is_read()) return whole();
  auto& parts = read_->parts;
  if (!parts.empty() && read_->names.contains(interfaces)) return *parts.back();
  if (parts.size() == kMostParts) return whole();
  read_->names.add(interfaces);
  return *parts.emplace_back(std::make_shared<const Document>(text_->read(read_->names)));
}

std::vector<InterfaceEntry> NativeConfiguration::entries() const {
  if (!is_read()) return text_->entries();
  std::vector<InterfaceEntry> entries;
  add_entries(whole().roots, entries);
  return entries;
}

}  // namespace ocifip
