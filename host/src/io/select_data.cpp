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

// Whether values of leaves that are no keys choose what they are in.
enum class Values { kPassedOver, kChoose };

// The queries for siblings. Those that give keys of an entry, or values that choose, are looked up.
class Level {
 public:
  Level(const Queries& parents, Values values) : values_(values) {
    for (const auto* parent : parents) add(parent->children);
  }
  Level(const Nodes& queries, Values values) : values_(values) { add(queries); }

  // Those that name a node, which may have other values than they choose it by.
  [[nodiscard]] Queries find(const DocumentNode& node) const {
    Queries found;
    if (const auto* query = entries_.find(node)) found.push_back(query);
    for (const auto& by_leaf : by_leaf_) {
      if (by_leaf.tag == node.tag) by_leaf.add_those_that_name(node, found);
    }
    add_those_that_name(node, others_, found);
    return found;
  }

  // The queries that give all the keys of an entry, or null if there are others.
  [[nodiscard]] const Queries* only_entries() const {
    return by_leaf_.empty() && others_.empty() ? &listed_ : nullptr;
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
  // Queries that give a leaf in what they name a value, by that.
  struct ByLeaf {
    void add_those_that_name(const DocumentNode& node, Queries& found) const {
      for (const auto& child : node.children) {
        if (!child.value || child.tag != leaf->tag ||
            child.module_namespace != leaf->module_namespace) {
          continue;
        }
        const auto known = queries.find(&child);
        if (known != queries.end()) Level::add_those_that_name(node, known->second, found);
        if (child.kind == NodeKind::kLeaf) return;
      }
    }

    std::string_view tag;      // of what they name
    const DocumentNode* leaf;  // of one of them
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
    const auto* leaf = leaf_of(query);
    if (leaf == nullptr) return others_;
    auto by_leaf = std::find_if(by_leaf_.begin(), by_leaf_.end(), [&](const ByLeaf& each) {
      return each.tag == query.tag && each.leaf->tag == leaf->tag &&
             each.leaf->module_namespace == leaf->module_namespace;
    });
    if (by_leaf == by_leaf_.end()) {
      by_leaf = by_leaf_.insert(by_leaf_.end(), {query.tag, leaf, {}});
    }
    return by_leaf->queries[leaf];
  }

  // The leaf by whose value a query is looked up, or null.
  [[nodiscard]] const DocumentNode* leaf_of(const DocumentNode& query) const {
    const auto& children = query.children;
    auto leaf = query.kind == NodeKind::kList
                    ? std::find_if(children.begin(), children.end(), chooses_entry)
                    : children.end();
    if (leaf == children.end() && values_ == Values::kChoose) {
      leaf = std::find_if(children.begin(), children.end(), is_value_choice);
    }
    return leaf == children.end() ? nullptr : &*leaf;
  }

  Values values_;
  SiblingIndex entries_;
  Queries listed_;  // those of entries_
  std::vector<ByLeaf> by_leaf_;
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

  // Adds what is selected of a node.
  void add(const DocumentNode& node, const Level& queries, Nodes& selected) {
    const auto asking = those_that_ask(node, queries);
    if (asking.empty()) return;
    if (!is_inner(node) || (below_ == Below::kAll && selects_all(asking))) {
      selected.push_back(node);
      return;
    }
    auto part = bare(node);
    for (auto& child : select(node.children, level_below(asking))) {
      if (!is_key(child)) part.children.push_back(std::move(child));
    }
    if (!has_only_keys(part) || comes_by_itself(node, asking)) selected.push_back(std::move(part));
  }

  [[nodiscard]] Queries those_that_ask(const DocumentNode& node, const Level& queries) const {
    auto asking = queries.find(node);
    if (values_ == Values::kChoose) {
      std::erase_if(asking, [&](const auto* query) { return !has_chosen_values(*query, node); });
    }
    return asking;
  }

  // Whether queries for a node select all that is in it.
  [[nodiscard]] bool selects_all(const Queries& asking) const {
    return std::any_of(asking.begin(), asking.end(), [this](const auto* query) {
      return values_ == Values::kChoose ? only_chooses(*query) : asks_for_all(*query);
    });
  }

  // Whether they select a node even when they select nothing in it.
  [[nodiscard]] bool comes_by_itself(const DocumentNode& node, const Queries& asking) const {
    return node.kind == NodeKind::kList &&
           std::any_of(asking.begin(), asking.end(), [this](const auto* query) {
             return values_ == Values::kPassedOver || asks_for_key(*query);
           });
  }

  [[nodiscard]] Level level_below(const Queries& asking) const { return {asking, values_}; }

 private:
  Below below_;
  Values values_;
  LongLists* lists_;
};

// Takes state out, and the containers that have nothing else.
void drop_state(Nodes& nodes) {
  std::erase_if(nodes, [](DocumentNode& node) {
    if (is_state(node)) return true;
    if (node.children.empty()) return false;
    drop_state(node.children);
    return is_plain_container(node) && node.children.empty();
  });
}

// The number of nodes in one, itself among them, as far as it is not more than `most`.
std::size_t count_nodes(const DocumentNode& node, std::size_t most) {
  std::size_t count = 1;
  for (const auto& child : node.children) {
    if (count >= most) break;
    count += count_nodes(child, most - count);
  }
  return count;
}

// Whether what is in a node is selected node by node.
bool is_divided(const DocumentNode& node) {
  constexpr std::size_t kMany = 1000;
  const bool is_entry = node.kind == NodeKind::kList && !lacks_key(node);
  return (is_entry || is_plain_container(node)) && count_nodes(node, kMany) == kMany;
}

}  // namespace

Document select_data(const Document& data, const Document& query) {
  return {data.name, Selection(Below::kAll).select(data.roots, {query.roots, Values::kPassedOver})};
}

Document select_chosen(const Document& data, const Document& query) {
  Selection selection(Below::kAll, nullptr, Values::kChoose);
  return {data.name, selection.select(data.roots, {query.roots, Values::kChoose})};
}

bool is_value_choice(const DocumentNode& node) {
  return !is_inner(node) && node.value && !is_key(node);
}

bool chooses(const DocumentNode& node) { return chooses_entry(node) || is_value_choice(node); }

bool only_chooses(const DocumentNode& query) {
  return std::all_of(query.children.begin(), query.children.end(), chooses);
}

Document select_named(const Document& data, const Document& query) {
  return {data.name,
          Selection(Below::kNothing).select(data.roots, {query.roots, Values::kPassedOver})};
}

class DataSelector::Lists : public LongLists {};

DataSelector::DataSelector(const Document& data) : data_(data), lists_(std::make_unique<Lists>()) {}

DataSelector::~DataSelector() = default;

Document DataSelector::select(const Document& query) {
  return {
      data_.name,
      Selection(Below::kAll, lists_.get()).select(data_.roots, {query.roots, Values::kPassedOver})};
}

class SelectionInSteps::Walk {
 public:
  Walk(const Document& data, const Document& query, Terms terms)
      : terms_(terms), selection_(Below::kAll, nullptr, values()) {
    around_.push_back({nullptr, &data.roots, Level(query.roots, values())});
  }

  bool go_on(Clock::time_point end, std::vector<SelectedPart>& parts) {
    do {
      Around& around = around_.back();
      if (around.next != around.children->size()) {
        select((*around.children)[around.next++], parts);
      } else {
        if (around.has_begun) parts.push_back({SelectedPart::Kind::kEnd, {}});
        around_.pop_back();
      }
    } while (!around_.empty() && Clock::now() < end);
    return !around_.empty();
  }

 private:
  // A node whose children are gone through.
  struct Around {
    const DocumentNode* node;  // null: the top
    const Nodes* children;
    std::optional<Level> queries;  // for the children; without them, all are selected
    std::size_t next = 0;
    bool has_begun = false;  // among the parts
  };

  [[nodiscard]] Values values() const {
    return terms_.values_choose ? Values::kChoose : Values::kPassedOver;
  }

  void select(const DocumentNode& node, std::vector<SelectedPart>& parts) {
    // Keys come with their entries.
    if (is_key(node) || (!terms_.with_state && is_state(node))) return;
    if (is_divided(node)) {
      enter(node, parts);
      return;
    }
    Nodes selected;
    const auto& queries = around_.back().queries;
    if (queries) {
      selection_.add(node, *queries, selected);
    } else {
      selected.push_back(node);
    }
    if (!terms_.with_state) drop_state(selected);
    if (selected.empty()) return;
    begin(parts);
    parts.push_back({SelectedPart::Kind::kNodes, std::move(selected)});
  }

  void enter(const DocumentNode& node, std::vector<SelectedPart>& parts) {
    const auto& queries = around_.back().queries;
    std::optional<Level> below;
    bool is_shown = node.kind == NodeKind::kList;
    if (queries) {
      const auto asking = selection_.those_that_ask(node, *queries);
      if (asking.empty()) return;
      if (!selection_.selects_all(asking)) {
        below.emplace(selection_.level_below(asking));
        is_shown = selection_.comes_by_itself(node, asking);
      }
    }
    around_.push_back({&node, &node.children, std::move(below)});
    if (is_shown) begin(parts);
  }

  // Begins the nodes around what is selected.
  void begin(std::vector<SelectedPart>& parts) {
    for (Around& around : around_) {
      if (around.node == nullptr || around.has_begun) continue;
      parts.push_back({SelectedPart::Kind::kBegin, {bare(*around.node)}});
      around.has_begun = true;
    }
  }

  Terms terms_;
  Selection selection_;
  std::vector<Around> around_;
};

SelectionInSteps::SelectionInSteps(const Document& data, const Document& query, Terms terms)
    : walk_(std::make_unique<Walk>(data, query, terms)) {}

SelectionInSteps::~SelectionInSteps() = default;

bool SelectionInSteps::go_on(Clock::time_point end, std::vector<SelectedPart>& parts) {
  return walk_->go_on(end, parts);
}

}  // namespace ocifip
