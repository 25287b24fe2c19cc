#include "mapping/read_input.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "io/document_nodes.h"
#include "io/leaf_types.h"
#include "io/read_document.h"
#include "io/select_data.h"
#include "mapping/envelope_checks.h"
#include "mapping/interface_nodes.h"
#include "mapping/read_nodes.h"

namespace ocifip {
namespace {

bool is_everything(const QueryRequest& request) {
  return !request.document && request.paths.empty();
}

// Takes out what no data are like, and what then asks for nothing any more: nodes that no model
// knows, and what is chosen by values that leaves cannot have.
class Possible {
 public:
  // Returns whether there was anything else.
  bool keep(std::vector<DocumentNode>& nodes) {
    const std::size_t count = nodes.size();
    bool is_changed = false;
    std::erase_if(nodes, [&](DocumentNode& node) {
      if (node.schema == nullptr || is_other_kind(node)) return true;
      if (has_wrong_value(node) || has_two_keys(node)) return true;
      // The content of anydata is nobody's.
      if (Models::is_any(node.schema) || !keep(node.children)) return false;
      is_changed = true;
      return only_chooses(node) && !ask_for_choices(node);
    });
    return is_changed || nodes.size() != count;
  }

 private:
  // What is left would ask for all: of it, only the leaves that choose are asked for. Whether there
  // are any but keys, which come with what is selected.
  static bool ask_for_choices(DocumentNode& node) {
    std::vector<DocumentNode> asked;
    std::copy_if(node.children.begin(), node.children.end(), std::back_inserter(asked),
                 is_value_choice);
    for (DocumentNode& leaf : asked) leaf.value.reset();
    std::move(asked.begin(), asked.end(), std::back_inserter(node.children));
    return !asked.empty();
  }

  static bool is_other_kind(const DocumentNode& node) {
    return Models::kind(node.schema) != node.kind;
  }

  bool has_wrong_value(DocumentNode& node) {
    return std::any_of(node.children.begin(), node.children.end(), [this](DocumentNode& leaf) {
      const bool may_have_one = leaf.schema != nullptr && Models::is_leaf(leaf.schema);
      return leaf.value && !(may_have_one && values_.settle(leaf.schema, *leaf.value));
    });
  }

  // Takes out what names a key again; an entry with two values of one is none.
  static bool has_two_keys(DocumentNode& entry) {
    if (entry.kind != NodeKind::kList) return false;
    std::vector<DocumentNode> keys;  // one of each, so that few are looked through
    bool has_two = false;
    std::erase_if(entry.children, [&](const DocumentNode& child) {
      if (!chooses_entry(child)) return false;
      const auto known = std::find_if(keys.begin(), keys.end(), [&](const DocumentNode& key) {
        return key.schema == child.schema;
      });
      if (known == keys.end()) {
        keys.push_back(child);
        return false;
      }
      has_two = has_two || !has_same_value(*known, child);
      return true;
    });
    return has_two;
  }

  ValueCheck values_;
};

// Has a query ask for all that values choose in, and for entries without a word of their keys.
void widen(std::vector<DocumentNode>& nodes) {
  for (DocumentNode& node : nodes) {
    auto& children = node.children;
    const bool is_entry = node.kind == NodeKind::kList && node.schema != nullptr;
    if (is_entry && !lacks_key(node)) {
      std::erase_if(children, [](const auto& key) { return is_key(key) && !key.value; });
    }
    if (only_chooses(node)) {
      std::erase_if(children, is_value_choice);
      continue;
    }
    for (DocumentNode& child : children) {
      if (is_value_choice(child)) child.value.reset();
    }
    widen(children);
  }
}

// What nodes of a query have in common that ask for something of the same: the name, the value of a
// leaf, and what chooses a container or entry.
std::string likeness(const DocumentNode& node) {
  std::string text;
  const auto add = [&text](const DocumentNode& part) {
    text.append(part.module_namespace.text()).append(1, '\n').append(part.tag.text());
    // No value has this character.
    if (part.value) text.append(1, '\0').append(*part.value);
    text.append(1, '\0');
  };
  add(node);
  for (const DocumentNode& child : node.children) {
    if (chooses(child)) add(child);
  }
  return text;
}

// Has one of two such nodes ask for what any of them does.
void join(DocumentNode& node, DocumentNode other) {
  if (!is_inner(node) || only_chooses(node)) return;
  if (only_chooses(other)) {
    node = std::move(other);
    return;
  }
  std::erase_if(other.children, chooses);
  std::move(other.children.begin(), other.children.end(), std::back_inserter(node.children));
}

// Makes one of the nodes that ask for something of the same.
void join_alike(std::vector<DocumentNode>& nodes) {
  if (nodes.size() > 1) {
    std::vector<DocumentNode> joined;
    std::unordered_map<std::string, std::size_t> places;
    for (DocumentNode& node : nodes) {
      const auto [known, is_new] = places.try_emplace(likeness(node), joined.size());
      if (is_new) {
        joined.push_back(std::move(node));
      } else {
        join(joined[known->second], std::move(node));
      }
    }
    nodes = std::move(joined);
  }
  for (DocumentNode& node : nodes) join_alike(node.children);
}

class QueryReader {
 public:
  QueryReader(const Models& models, const QueryRequest& request, InputRules rules, Views views)
      : models_(models), request_(request), views_(views), checks_(models, rules) {}

  ReadInput read() {
    read_.content = request_.content.value_or(Content::kAll);
    read_.values_choose = request_.values_choose;
    if (request_.document) read_given();
    for (const std::string& path : request_.paths) add(read_path(models_, path));
    if (views_ == Views::kBoth && is_everything(request_)) add_everything({});
    read_.notes = checks_.notes();
    return std::move(read_);
  }

 private:
  void read_given() {
    const DocumentUse use = read_.values_choose ? DocumentUse::kFilter : DocumentUse::kData;
    Document document = read_document(models_, *request_.document, use);
    read_.content = content_of(request_, document);
    if (reads_all(document)) {
      add_everything(std::move(document));
      return;
    }
    forget_empty_values(document.roots);
    if (read_.values_choose) {
      Possible().keep(document.roots);
      join_alike(document.roots);
      std::erase_if(document.roots, [](const DocumentNode& root) {
        return !is_named(root, kInterfacesModule, "interfaces") && !is_native_root(root);
      });
    }
    add(std::move(document));
  }

  // Of both kinds of models, as far as they may be read.
  void add_everything(Document document) {
    document.roots = read_path(models_, "/openconfig-interfaces:interfaces").roots;
    add(std::move(document));
    read_.is_all_native = views_ == Views::kBoth;
  }

  void add(Document document) {
    if (views_ == Views::kBoth) {
      Document native = take_native(document, NativeNodes::kAll);
      check_native_query(models_, native);
      add(std::move(native), read_.native);
      if (document.roots.empty()) return;
    }
    checks_.check_query(document);
    add(std::move(document), read_.openconfig);
  }

  void add(Document document, ReadParts& parts) const {
    if (views_ == Views::kBoth && document.roots.empty()) return;
    if (read_.values_choose) {
      parts.chosen.push_back(document);
      widen(document.roots);
      join_alike(document.roots);
    }
    parts.asked.push_back(std::move(document));
  }

  const Models& models_;
  const QueryRequest& request_;
  Views views_;
  InputChecks checks_;
  ReadInput read_;
};

}  // namespace

ReadInput read_query(const Models& models, const QueryRequest& request, InputRules rules,
                     Views views) {
  return QueryReader(models, request, rules, views).read();
}

Document joined(const std::vector<Document>& documents) {
  Document all;
  for (const Document& document : documents) {
    all.roots.insert(all.roots.end(), document.roots.begin(), document.roots.end());
  }
  return all;
}

}  // namespace ocifip
