#include "io/select_data.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/document_nodes.h"

namespace ocifip {
namespace {

using Nodes = std::vector<DocumentNode>;
using Queries = std::vector<const DocumentNode*>;

bool names(const DocumentNode& query, const DocumentNode& node) {
  if (query.tag != node.tag || query.module_namespace != node.module_namespace) return false;
  if (query.kind == NodeKind::kLeafList) return !query.value || has_same_value(query, node);
  return query.kind != NodeKind::kList ||
         std::all_of(query.children.begin(), query.children.end(), [&node](const auto& key) {
           if (!chooses_entry(key)) return true;
           const auto* named = find_key(node, key.tag);
           return named != nullptr && has_same_value(key, *named);
         });
}

// Whether a query's node names a key without choosing by it.
bool asks_for_key(const DocumentNode& query) {
  return std::any_of(query.children.begin(), query.children.end(),
                     [](const auto& child) { return is_key(child) && !chooses_entry(child); });
}

// The queries for siblings. Those that give keys of an entry are looked up.
class Level {
 public:
  explicit Level(const Queries& parents) {
    for (const auto* parent : parents) add(parent->children);
  }
  explicit Level(const Nodes& queries) { add(queries); }

  [[nodiscard]] Queries find(const DocumentNode& node) const {
    Queries found;
    if (const auto* query = entries_.find(node)) found.push_back(query);
    for (const auto& by_key : by_key_) {
      const auto* key = by_key.tag == node.tag ? find_key(node, by_key.key) : nullptr;
      const auto queries = key == nullptr ? by_key.queries.end() : by_key.queries.find(key);
      if (queries != by_key.queries.end()) add_those_that_name(node, queries->second, found);
    }
    add_those_that_name(node, others_, found);
    return found;
  }

  // The queries that give all the keys of an entry, or null if there are others.
  [[nodiscard]] const Queries* only_entries() const {
    return by_key_.empty() && others_.empty() ? &listed_ : nullptr;
  }

 private:
  struct Hash {
    std::size_t operator()(const DocumentNode* key) const { return hash_value(*key); }
  };
  struct IsSame {
    bool operator()(const DocumentNode* left, const DocumentNode* right) const {
      return has_same_value(*left, *right);
    }
  };
  // Queries that give some of the keys of a list, by the value of the first that they give.
  struct ByKey {
    std::string_view tag;
    std::string_view key;
    std::unordered_map<const DocumentNode*, Queries, Hash, IsSame> queries;
  };

  static void add_those_that_name(const DocumentNode& node, const Queries& queries,
                                  Queries& found) {
    for (const auto* query : queries) {
      if (names(*query, node)) found.push_back(query);
    }
  }

  void add(const Nodes& queries) {
    for (const auto& query : queries) {
      const bool is_entry = query.kind == NodeKind::kList && query.schema != nullptr &&
                            !lacks_key(query) && !asks_for_key(query);
      if (is_entry && entries_.find(query) == nullptr) {
        // The index hands out what may be changed; nothing here does.
        entries_.add(const_cast<DocumentNode&>(query));
        listed_.push_back(&query);
      } else {
        place_of(query).push_back(&query);
      }
    }
  }

  // Where to keep a query that does not give all the keys of an entry.
  Queries& place_of(const DocumentNode& query) {
    const auto key = std::find_if(query.children.begin(), query.children.end(), chooses_entry);
    if (query.kind != NodeKind::kList || key == query.children.end()) return others_;
    auto by_key = std::find_if(by_key_.begin(), by_key_.end(), [&](const ByKey& each) {
      return each.tag == query.tag && each.key == key->tag;
    });
    if (by_key == by_key_.end()) {
      by_key = by_key_.insert(by_key_.end(), {query.tag, key->tag, {}});
    }
    return by_key->queries[&*key];
  }

  SiblingIndex entries_;
  Queries listed_;  // those of entries_
  std::vector<ByKey> by_key_;
  Queries others_;
};

// Finds entries in long lists. An index is made of a list when it is first searched.
class LongLists {
 public:
  // The siblings that queries name by all of their keys, in the order of the data; nothing when all
  // siblings are to be looked at instead.
  std::optional<Queries> find(const Nodes& siblings, const Level& queries) {
    const auto* entries = queries.only_entries();
    if (entries == nullptr || siblings.size() < kLong || siblings.size() < entries->size()) {
      return std::nullopt;
    }
    const auto [known, is_new] = lists_.try_emplace(&siblings);
    if (is_new) known->second.fill(siblings);
    if (known->second.has_twins) return std::nullopt;
    Queries found;
    for (const auto* entry : *entries) {
      const auto* node = known->second.index.find(*entry);
      if (node != nullptr) found.push_back(node);
    }
    std::sort(found.begin(), found.end(), std::less<>());
    return found;
  }

 private:
  static constexpr std::size_t kLong = 64;

  struct List {
    void fill(const Nodes& siblings) {
      for (const auto& node : siblings) {
        has_twins = has_twins || index.find(node) != nullptr;
        // The index hands out what may be changed; nothing here does.
        index.add(const_cast<DocumentNode&>(node));
      }
    }

    SiblingIndex index;
    bool has_twins = false;  // the index has but one of them
  };

  std::unordered_map<const Nodes*, List> lists_;
};

// What is selected of a node when nothing below it is named.
enum class Below { kAll, kNothing };

// Whether values of leaves that are no keys choose what they are in.
enum class Values { kPassedOver, kChoose };

// Whether a node has the values that choose it.
bool has_chosen_values(const DocumentNode& query, const DocumentNode& node) {
  return std::all_of(query.children.begin(), query.children.end(), [&](const auto& choice) {
    if (!is_value_choice(choice)) return true;
    return std::any_of(node.children.begin(), node.children.end(), [&](const auto& leaf) {
      return leaf.tag == choice.tag && leaf.module_namespace == choice.module_namespace &&
             leaf.value && has_same_value(choice, leaf);
    });
  });
}

// Recursion is as deep as documents may be.
class Selection {
 public:
  // `lists`, when given, are those of the data.
  explicit Selection(Below below, LongLists* lists = nullptr, Values values = Values::kPassedOver)
      : below_(below), values_(values), lists_(lists) {}

  Nodes select(const Nodes& data, const Level& queries) {
    Nodes selected;
    const auto found = lists_ == nullptr ? std::nullopt : lists_->find(data, queries);
    if (found) {
      for (const auto* node : *found) add(*node, queries, selected);
    } else {
      for (const auto& node : data) add(node, queries, selected);
    }
    return selected;
  }

 private:
  void add(const DocumentNode& node, const Level& queries, Nodes& selected) {
    const bool is_chosen = values_ == Values::kChoose;
    auto asking = queries.find(node);
    if (is_chosen) {
      std::erase_if(asking, [&](const auto* query) { return !has_chosen_values(*query, node); });
    }
    if (asking.empty()) return;
    const auto asks = [&](const DocumentNode* query) {
      return is_chosen ? only_chooses(*query) : asks_for_all(*query);
    };
    if (!is_inner(node) ||
        (below_ == Below::kAll && std::any_of(asking.begin(), asking.end(), asks))) {
      selected.push_back(node);
      return;
    }
    auto part = bare(node);
    for (auto& child : select(node.children, Level(asking))) {
      if (!is_key(child)) part.children.push_back(std::move(child));
    }
    const auto keeps = [&](const auto* query) { return !is_chosen || asks_for_key(*query); };
    const bool is_entry = node.kind == NodeKind::kList;
    const bool is_kept =
        !has_only_keys(part) || (is_entry && std::any_of(asking.begin(), asking.end(), keeps));
    if (is_kept) selected.push_back(std::move(part));
  }

  Below below_;
  Values values_;
  LongLists* lists_;
};

}  // namespace

Document select_data(const Document& data, const Document& query) {
  return {data.name, Selection(Below::kAll).select(data.roots, Level(query.roots))};
}

Document select_chosen(const Document& data, const Document& query) {
  Selection selection(Below::kAll, nullptr, Values::kChoose);
  return {data.name, selection.select(data.roots, Level(query.roots))};
}

bool is_value_choice(const DocumentNode& node) {
  return !is_inner(node) && node.value && !is_key(node);
}

bool only_chooses(const DocumentNode& query) {
  return std::all_of(query.children.begin(), query.children.end(), [](const auto& child) {
    return chooses_entry(child) || is_value_choice(child);
  });
}

Document select_named(const Document& data, const Document& query) {
  return {data.name, Selection(Below::kNothing).select(data.roots, Level(query.roots))};
}

class DataSelector::Lists : public LongLists {};

DataSelector::DataSelector(const Document& data) : data_(data), lists_(std::make_unique<Lists>()) {}

DataSelector::~DataSelector() = default;

Document DataSelector::select(const Document& query) {
  return {data_.name, Selection(Below::kAll, lists_.get()).select(data_.roots, Level(query.roots))};
}

}  // namespace ocifip
