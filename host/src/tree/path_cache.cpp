#include "tree/path_cache.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace ocifip {
namespace {

struct RoleRow {
  std::string_view path;
  std::string_view module;
  PlaceRole role;
};

constexpr RoleRow kRoles[] = {
    {"/interfaces/interface", "openconfig-interfaces", PlaceRole::kOpenConfigInterface},
    {"/interfaces/interface/subinterfaces/subinterface", "openconfig-interfaces",
     PlaceRole::kOpenConfigSubinterface},
    {"/interface-configurations/interface-configuration", "Halvane-Ombrix-ifmgr-cfg",
     PlaceRole::kNativeInterface},
};

PlaceRole role_of(const Place& place) {
  for (const RoleRow& row : kRoles) {
    if (place.path == row.path && place.module == row.module) {
      return row.role;
    }
  }
  return PlaceRole::kPlain;
}

bool is_leaf(const Place& place) {
  return place.kind == NodeKind::kLeaf || place.kind == NodeKind::kLeafList;
}

// The cache owns its places, and hands them out for reading.
Place* writable(const Place* place) { return const_cast<Place*>(place); }

std::size_t combine(std::size_t hash, std::size_t more) {
  return hash ^ (more + 0x9e3779b97f4a7c15u + (hash << 6) + (hash >> 2));
}

}  // namespace

std::vector<std::string_view> split_path(std::string_view path) {
  std::vector<std::string_view> tags;
  while (!path.empty()) {
    if (path.front() != '/') {
      return {};
    }
    path.remove_prefix(1);
    const std::string_view tag = path.substr(0, path.find('/'));
    if (tag.empty()) {
      return {};
    }
    tags.push_back(tag);
    path.remove_prefix(tag.size());
  }
  return tags;
}

// Paths have long stems in common and differ in their lengths and at their ends; namespaces differ
// in their lengths.
std::size_t PathCache::TextHash::operator()(std::string_view text) const {
  std::array<std::uint64_t, 2> end{};
  if (text.size() >= sizeof end) {
    std::memcpy(end.data(), text.data() + text.size() - sizeof end, sizeof end);
  } else {
    std::memcpy(end.data(), text.data(), text.size());
  }
  return (end[0] * 0x9e3779b97f4a7c15u ^ end[1]) * 0x9e3779b97f4a7c15u >> 7;
}

std::size_t PathCache::KeyHash::operator()(const KeyView& key) const {
  return combine(combine(std::hash<const Place*>()(key.from), TextHash()(key.path)),
                 (key.path.size() << 8) + key.module_namespace.size());
}

bool PathCache::KeyEqual::operator()(const KeyView& first, const KeyView& second) const {
  return first.from == second.from && first.path == second.path &&
         first.module_namespace == second.module_namespace;
}

PathCache::PathCache(const Models& models) : models_(models) { places_.emplace_back(); }

Steps PathCache::resolve(const Place* from, std::string_view path,
                         std::string_view module_namespace) {
  const KeyView key(from, path, module_namespace);
  auto known = paths_.find(key);
  if (known == paths_.end()) {
    known = paths_
                .emplace(Key{from, std::string(path), std::string(module_namespace)},
                         resolve_steps(from, path, module_namespace))
                .first;
  }
  return known->second;
}

std::vector<const Place*> PathCache::resolve_steps(const Place* from, std::string_view path,
                                                   std::string_view module_namespace) {
  std::vector<const Place*> steps;
  Place* place = writable(from);
  for (const std::string_view tag : split_path(path)) {
    if (is_leaf(*place)) {
      if (place->schema != nullptr) {
        return {};
      }
      place->kind = NodeKind::kContainer;
    }
    place = find_or_add(place, tag, module_namespace);
    steps.push_back(place);
  }
  return steps;
}

const Place* PathCache::child(const Place* parent, std::string_view tag,
                              std::string_view module_namespace) {
  return find_or_add(writable(parent), tag, module_namespace);
}

Place* PathCache::find_or_add(Place* parent, std::string_view tag,
                              std::string_view module_namespace) {
  const lysc_node* schema = schema_child(parent, tag, module_namespace);
  const std::string_view own =
      schema != nullptr ? Models::module_namespace(schema) : module_namespace;
  for (Place* known : children_[parent]) {
    if (known->tag == tag && known->module_namespace == own) {
      return known;
    }
  }
  return add_place(parent, tag, own, schema);
}

// The path's own module first, then the parent's, then any that adds such a node.
const lysc_node* PathCache::schema_child(const Place* parent, std::string_view tag,
                                         std::string_view module_namespace) const {
  if (parent->parent != nullptr && parent->schema == nullptr) {
    return nullptr;
  }
  const lysc_node* found = models_.child(parent->schema, tag, module_namespace);
  if (found == nullptr) {
    found = models_.child(parent->schema, tag, {});
  }
  if (found == nullptr) {
    const auto& children = models_.children(parent->schema);
    const auto same = std::find_if(children.begin(), children.end(),
                                   [&](const lysc_node* node) { return Models::tag(node) == tag; });
    found = same == children.end() ? nullptr : *same;
  }
  return found;
}

Place* PathCache::add_place(Place* parent, std::string_view tag, std::string_view module_namespace,
                            const lysc_node* schema) {
  Place* place = &places_.emplace_back();
  children_[parent].push_back(place);
  place->parent = parent;
  place->tag = tag;
  place->module_namespace = module_namespace;
  place->module = models_.module_of(module_namespace);
  place->path = parent->path + "/" + place->tag;
  place->schema = schema;
  place->role = role_of(*place);
  place->kind = NodeKind::kLeaf;
  if (schema != nullptr) {
    place->kind = Models::kind(schema);
    place->is_key = Models::is_key(schema);
    place->names_by_ipv6 = Models::names_by_ipv6(schema);
    place->order = Models::position(schema);
    add_keys(place);
  }
  return place;
}

void PathCache::add_keys(Place* list) {
  for (const std::string& key : Models::keys(list->schema)) {
    list->keys.push_back(find_or_add(list, key, list->module_namespace));
  }
  list->interface_key = interface_key_of(*list);
}

// Neither OpenConfig's lists nor those of the private summaries, which are keyed alike, have such a
// key.
const Place* PathCache::interface_key_of(const Place& list) {
  for (const Place* above = &list; above != nullptr; above = above->parent) {
    if (above->role == PlaceRole::kNativeInterface || above->interface_key != nullptr) {
      return nullptr;
    }
  }
  const auto found = std::find_if(list.keys.begin(), list.keys.end(), [](const Place* key) {
    return key->tag == "interface" || key->tag == "interface-name";
  });
  return found == list.keys.end() || list.module.starts_with("openconfig-") ? nullptr : *found;
}

void PathCache::declare_list(const Place* place, std::string_view key) {
  if (place->schema != nullptr || place->is_list()) {
    return;
  }
  Place* list = writable(place);
  list->kind = NodeKind::kList;
  Place* leaf = find_or_add(list, key, list->module_namespace);
  leaf->is_key = true;
  leaf->order = 0;
  list->keys = {leaf};
}

const std::string& PathCache::without_prefixes(std::string_view list_path) {
  auto known = list_paths_.find(list_path);
  if (known == list_paths_.end()) {
    std::string plain;
    for (const std::string_view tag : split_path(list_path)) {
      plain.append("/").append(tag.substr(tag.find(':') + 1));
    }
    known = list_paths_.emplace(list_path, std::move(plain)).first;
  }
  return known->second;
}

}  // namespace ocifip
