// Paths of output nodes, resolved once against the schema.
#ifndef OCIFIP_HOST_TREE_PATH_CACHE_H_
#define OCIFIP_HOST_TREE_PATH_CACHE_H_

#include <cstddef>
#include <deque>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/document.h"
#include "io/ipv6_text.h"
#include "io/models.h"

namespace ocifip {

// Lists whose entries the request names by itself.
enum class PlaceRole { kPlain, kOpenConfigInterface, kOpenConfigSubinterface, kNativeInterface };

// Where a node stands in the schema. Two nodes stand in the same place when the pointers are equal.
struct Place {
  static constexpr std::size_t kUnordered = std::numeric_limits<std::size_t>::max();

  const Place* parent = nullptr;  // null for the root, which has no node of its own
  std::string tag;
  std::string module;  // "" when no model knows the namespace
  std::string module_namespace;
  std::string path;                   // from the root, without prefixes and keys
  const lysc_node* schema = nullptr;  // null when no model knows the node
  NodeKind kind = NodeKind::kContainer;
  PlaceRole role = PlaceRole::kPlain;
  std::size_t order = kUnordered;  // position among the schema's siblings
  std::vector<const Place*> keys;  // of a list, in the order of its key statement
  bool is_key = false;             // a key of the parent, which is a list
  bool names_by_ipv6 = false;      // a key or leaf-list of IPv6 addresses
  // Of a native list: the key that names an interface. Null below an entry that names one already:
  // the key tells another interface then. Null also for the lists of interfaces themselves.
  const Place* interface_key = nullptr;

  [[nodiscard]] bool is_list() const { return kind == NodeKind::kList; }
  // Whether two texts are the same value of the leaf, and a hash that such texts share.
  [[nodiscard]] bool is_same_value(std::string_view left, std::string_view right) const {
    return names_by_ipv6 ? is_same_ipv6(left, right) : left == right;
  }
  [[nodiscard]] std::size_t hash_value(std::string_view value) const {
    return names_by_ipv6 ? hash_ipv6(value) : std::hash<std::string_view>()(value);
  }
};

// The places of a path, from the top down.
using Steps = std::span<const Place* const>;

// Places and paths live as long as the cache.
class PathCache {
 public:
  explicit PathCache(const Models& models);
  PathCache(const PathCache&) = delete;
  PathCache& operator=(const PathCache&) = delete;

  [[nodiscard]] const Place* root() const { return &places_.front(); }

  // Resolves a path below a place. The namespace is that of the path's own nodes; nodes on the way
  // that the schema places in another module keep theirs. An empty namespace stands for any. What
  // no model knows is a container on the way and a leaf at the end. No steps mean that the path
  // cannot be resolved: it is malformed, or leads through a leaf.
  Steps resolve(const Place* from, std::string_view path, std::string_view module_namespace);

  // The child of a place that a tag names; the namespace as for resolve.
  const Place* child(const Place* parent, std::string_view tag, std::string_view module_namespace);

  // Makes a place that no model knows a list with one key, whatever it was taken for before.
  void declare_list(const Place* place, std::string_view key);

  // A list path without its module prefixes: "/a:b/a:c" becomes "/b/c".
  const std::string& without_prefixes(std::string_view list_path);

 private:
  struct Key {
    const Place* from;
    std::string path;
    std::string module_namespace;
  };
  struct KeyView {
    const Place* from;
    std::string_view path;
    std::string_view module_namespace;
    KeyView(const Place* place, std::string_view text, std::string_view name)
        : from(place), path(text), module_namespace(name) {}
    KeyView(const Key& key)  // NOLINT(google-explicit-constructor): both are looked up alike
        : from(key.from), path(key.path), module_namespace(key.module_namespace) {}
  };
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const;
  };
  struct KeyHash {
    using is_transparent = void;
    std::size_t operator()(const KeyView& key) const;
  };
  struct KeyEqual {
    using is_transparent = void;
    bool operator()(const KeyView& first, const KeyView& second) const;
  };

  std::vector<const Place*> resolve_steps(const Place* from, std::string_view path,
                                          std::string_view module_namespace);
  Place* find_or_add(Place* parent, std::string_view tag, std::string_view module_namespace);
  Place* add_place(Place* parent, std::string_view tag, std::string_view module_namespace,
                   const lysc_node* schema);
  void add_keys(Place* list);
  static const Place* interface_key_of(const Place& list);
  const lysc_node* schema_child(const Place* parent, std::string_view tag,
                                std::string_view module_namespace) const;

  const Models& models_;
  std::deque<Place> places_;  // the root first; addresses stay good
  std::unordered_map<const Place*, std::vector<Place*>> children_;
  std::unordered_map<Key, std::vector<const Place*>, KeyHash, KeyEqual> paths_;
  std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> list_paths_;
};

// Splits "/a/b" into its tags; empty when the path is malformed.
std::vector<std::string_view> split_path(std::string_view path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_PATH_CACHE_H_
