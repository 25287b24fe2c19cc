#include "io/check_data.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "io/check_plain_data.h"
#include "io/data_path.h"
#include "io/document_nodes.h"
#include "io/leaf_types.h"
#include "io/libyang_log.h"
#include "io/text.h"

namespace ocifip {
namespace {

using NodePath = std::vector<const DocumentNode*>;
using Keys = std::vector<const char*>;  // their values

// How libyang's sentences begin, and what is said instead around the text that they quote first.
struct Rewording {
  std::string_view sentence;
  std::string_view before;
  std::string_view after;
};

constexpr std::array kRewordings = {
    Rewording{"Invalid leafref value", "", " is the value of no node that this may refer to"},
    Rewording{"Mandatory node", "", " is missing"},
    Rewording{"Mandatory choice", "nothing of the choice ", " is there"},
    Rewording{"Too few", "too few values or entries of ", ""},
    Rewording{"Too many", "too many values or entries of ", ""},
    Rewording{"Duplicate instance of", "a second ", " with the same value"},
    Rewording{"Unique data leaf", "two entries have the same values of ", ""},
    Rewording{"Must condition", "the model's condition ", " does not hold"},
    Rewording{"When condition", "the model's condition ", " does not hold"},
};

// The sentence in other words, as far as there are any.
std::string reworded(std::string sentence) {
  const auto* const known =
      std::find_if(kRewordings.begin(), kRewordings.end(),
                   [&](const Rewording& each) { return sentence.starts_with(each.sentence); });
  const auto first = sentence.find('"');
  const auto last = first == std::string::npos ? first : sentence.find('"', first + 1);
  if (known == kRewordings.end() || last == std::string::npos) return sentence;
  const auto quoted = sentence.substr(first, last + 1 - first);
  return std::string(known->before).append(quoted).append(known->after);
}

std::string wrong_value(const lysc_node* leaf, const std::string& value) {
  return in_quotes(value) + " is not " + expected_value(leaf);
}

constexpr std::size_t kMostKeys = 8;  // of a list; libyang takes them one by one as arguments

// Looks for the instance of one schema node with the fewest nodes below it that are, or belong to,
// another.
struct LackSearch {
  const lysc_node* holder;
  const lysc_node* missing;
  NodePath found{};
  std::ptrdiff_t fewest = std::numeric_limits<std::ptrdiff_t>::max();
  NodePath path{};

  [[nodiscard]] std::ptrdiff_t count_below(const DocumentNode& node) const {
    std::ptrdiff_t count = 0;
    for (const auto& child : node.children) {
      const auto* schema = child.schema;
      // The content of anydata is nobody's.
      if (schema == nullptr) continue;
      while (schema != holder && schema != missing) schema = schema->parent;
      count += schema == missing ? 1 : count_below(child);
    }
    return count;
  }

  void look_through(const std::vector<DocumentNode>& nodes) {
    for (const auto& node : nodes) {
      path.push_back(&node);
      if (node.schema == holder) {
        const auto count = count_below(node);
        if (count < fewest) found = path;
        fewest = std::min(count, fewest);
      }
      look_through(node.children);
      path.pop_back();
    }
  }
};

// The document as libyang has it, made node by node; each leads back to the document's own.
class DataTree {
 public:
  explicit DataTree(const Models& models) : models_(models) { forget_errors(); }
  ~DataTree() {
    lyd_free_all(tree_);
    forget_errors();
  }
  DataTree(const DataTree&) = delete;
  DataTree& operator=(const DataTree&) = delete;

  std::optional<DataFault> check(const Document& document) {
    for (const auto& root : document.roots) {
      if (!add(root, nullptr)) return fault_;
    }
    if (lyd_validate_all(&tree_, models_.context(), LYD_VALIDATE_PRESENT, nullptr) != LY_SUCCESS) {
      find_path(document);
      fail(reason());
    }
    return fault_;
  }

 private:
  void forget_errors() const { ly_err_clean(const_cast<ly_ctx*>(models_.context()), nullptr); }
  bool fail(std::string reason);
  [[nodiscard]] std::string reason() const;
  [[nodiscard]] std::string location(std::string_view mark) const;
  void find_path(const Document& document);
  void find_lack(const Document& document, std::string place);

  bool add(const DocumentNode& node, lyd_node* parent);
  bool add_known(const DocumentNode& node, lyd_node* parent);
  bool add_leaf(const DocumentNode& node, lyd_node* parent);
  bool add_entry(const DocumentNode& node, lyd_node* parent);
  bool add_key(const DocumentNode& entry, const std::string& key, Keys& values);
  bool add_container(const DocumentNode& node, lyd_node* parent);
  bool add_children(const DocumentNode& node, lyd_node* made);
  bool keep(LY_ERR result, const DocumentNode& node, lyd_node* parent, lyd_node* made);

  const Models& models_;
  QuietLog quiet_;
  lyd_node* tree_ = nullptr;
  NodePath path_;  // from the top to the node at hand
  std::optional<DataFault> fault_;
};

// Always false: nothing is looked at behind the first fault.
bool DataTree::fail(std::string reason) {
  DataFault fault;
  if (!path_.empty()) {
    fault.tag = path_.back()->tag;
    fault.path = instance_path(path_);
    fault.line = path_.back()->line;
  }
  fault.reason = std::move(reason);
  fault_ = std::move(fault);
  return false;
}

std::string DataTree::reason() const {
  const auto* item = first_error(models_.context());
  if (item == nullptr) return "libyang refuses it without a reason";
  std::string reason = in_one_line(item->msg);
  if (reason.ends_with('.')) reason.pop_back();
  return reworded(std::move(reason));
}

// libyang names the place of a fault of the whole in a sentence: `Schema location "/a:b/c", data
// location "/a:b".` Of what is not there it gives the place in the schema alone.
std::string DataTree::location(std::string_view mark) const {
  const auto* item = first_error(models_.context());
  const std::string_view text = item == nullptr || item->path == nullptr ? "" : item->path;
  const auto at = text.find(mark);
  if (at == std::string_view::npos) return {};
  const auto first = at + mark.size();
  // A value in a path may have quotes of its own; a path in the schema has none.
  return std::string(text.substr(first, text.rfind('"') - first));
}

void DataTree::find_path(const Document& document) {
  path_.clear();
  const auto place = location("ata location \"");
  lyd_node* node = nullptr;
  if (place.empty()) {
    find_lack(document, location("chema location \""));
  } else if (tree_ != nullptr) {
    lyd_find_path(tree_, place.c_str(), 0, &node);
  }
  for (; node != nullptr; node = lyd_parent(node)) {
    if (node->priv == nullptr) continue;
    path_.insert(path_.begin(), static_cast<const DocumentNode*>(node->priv));
  }
}

// Finds the node that has fewest of what is missing: the first that has none of it, as a rule. It
// is an entry, or another node that is there for its own sake: the container right above what is
// missing may not be there.
void DataTree::find_lack(const Document& document, std::string place) {
  const lysc_node* missing = nullptr;
  // A choice is found by nothing but what it is in.
  while (!place.empty() && missing == nullptr) {
    missing = lys_find_path(models_.context(), nullptr, place.c_str(), 0);
    const auto last = place.rfind('/');
    place.resize(last == std::string::npos ? 0 : last);
  }
  if (missing == nullptr) return;
  const auto* holder = lysc_data_parent(missing);
  while (holder != nullptr && Models::is_plain_container(holder) && holder->parent != nullptr) {
    holder = lysc_data_parent(holder);
  }
  if (holder == nullptr) return;
  LackSearch search{holder, missing};
  search.look_through(document.roots);
  path_ = std::move(search.found);
}

bool DataTree::add(const DocumentNode& node, lyd_node* parent) {
  path_.push_back(&node);
  const bool is_added = add_known(node, parent);
  path_.pop_back();
  return is_added;
}

bool DataTree::add_known(const DocumentNode& node, lyd_node* parent) {
  if (node.schema == nullptr) return fail("no model has this node");
  if (node.operation) return fail("an operation in data");
  switch (node.kind) {
    case NodeKind::kLeaf:
    case NodeKind::kLeafList:
      return add_leaf(node, parent);
    case NodeKind::kList:
      return add_entry(node, parent);
    default:
      return add_container(node, parent);
  }
}

// Takes a node that was made, or says why it was not.
bool DataTree::keep(LY_ERR result, const DocumentNode& node, lyd_node* parent, lyd_node* made) {
  if (result != LY_SUCCESS) return fail(reason());
  // libyang leaves the pointer to its user.
  made->priv = const_cast<DocumentNode*>(&node);
  if (parent == nullptr) lyd_insert_sibling(tree_, made, &tree_);
  return true;
}

bool DataTree::add_leaf(const DocumentNode& node, lyd_node* parent) {
  if (!node.value) return fail("a leaf without a value");
  lyd_node* made = nullptr;
  const auto result =
      lyd_new_term(parent, node.schema->module, node.tag.c_str(), node.value->c_str(), 0, &made);
  return result == LY_SUCCESS ? keep(result, node, parent, made)
                              : fail(wrong_value(node.schema, *node.value));
}

// libyang makes an entry from all of its keys at once, which hides the one that is wrong.
bool DataTree::add_key(const DocumentNode& entry, const std::string& key, Keys& values) {
  const auto* value = key_value(entry, key);
  if (value == nullptr) return fail("an entry without its key " + in_quotes(key));
  const auto* leaf = models_.child(entry.schema, key, {});
  const auto result = lyd_value_validate(models_.context(), leaf, value->c_str(), value->size(),
                                         nullptr, nullptr, nullptr);
  values.push_back(value->c_str());
  return result == LY_SUCCESS || result == LY_EINCOMPLETE ||
         fail("key " + in_quotes(key) + ": " + wrong_value(leaf, *value));
}

bool DataTree::add_entry(const DocumentNode& node, lyd_node* parent) {
  Keys values;
  for (const auto& key : Models::keys(node.schema)) {
    if (!add_key(node, key, values)) return false;
  }
  const auto given = std::count_if(node.children.begin(), node.children.end(), is_key);
  if (static_cast<std::size_t>(given) != values.size()) return fail("a key is given twice");
  if (values.size() > kMostKeys) return fail("an entry with too many keys to check");
  values.resize(kMostKeys);
  lyd_node* made = nullptr;
  // It takes as many of them as the list has keys.
  const auto result =
      lyd_new_list(parent, node.schema->module, node.tag.c_str(), 0, &made, values[0], values[1],
                   values[2], values[3], values[4], values[5], values[6], values[7]);
  return keep(result, node, parent, made) && add_children(node, made);
}

bool DataTree::add_container(const DocumentNode& node, lyd_node* parent) {
  lyd_node* made = nullptr;
  if (Models::is_any(node.schema)) {
    const auto result = lyd_new_any(parent, node.schema->module, node.tag.c_str(), "{}", 0,
                                    LYD_ANYDATA_JSON, 0, &made);
    return keep(result, node, parent, made);
  }
  const auto result = lyd_new_inner(parent, node.schema->module, node.tag.c_str(), 0, &made);
  return keep(result, node, parent, made) && add_children(node, made);
}

bool DataTree::add_children(const DocumentNode& node, lyd_node* made) {
  return std::all_of(node.children.begin(), node.children.end(),
                     [&](const DocumentNode& child) { return is_key(child) || add(child, made); });
}

}  // namespace

std::optional<DataFault> check_data(const Models& models, const Document& document) {
  if (is_plainly_accepted(models, document)) return std::nullopt;
  return DataTree(models).check(document);
}

}  // namespace ocifip
