#include <algorithm>
#include <utility>

#include "io/document_nodes.h"
#include "io/meant_node.h"
#include "io/read_document.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "ocifip/nearest_name.h"

namespace ocifip {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// A predicate of a step: [name='value'], or [.='value'] of a leaf-list.
struct Predicate {
  std::string_view name;
  std::string_view value;
};

struct Step {
  std::string_view module;  // as written before the colon, or ""
  std::string_view tag;
  std::vector<Predicate> predicates;
};

class PathReader {
 public:
  PathReader(const Models& models, const std::string& path, std::optional<Operation> operation)
      : models_(models),
        path_(path),
        operation_(operation),
        left_(path),
        builder_(models, path.empty() ? in_quotes(path) : in_short(path)) {}

  Document read();

 private:
  [[noreturn]] void fail(const std::string& reason) const { builder_.fail(0, reason); }
  [[noreturn]] void fail_at(const std::string& reason, InputFault::Kind kind,
                            std::string_view tag) const {
    builder_.fail_at(0, reason, kind, tag);
  }

  Step take_step();
  Predicate take_predicate();
  std::string_view take_quoted(std::string_view name);
  std::string_view take_unquoted(std::string_view name);
  std::string_view take_name();
  void take(char expected);
  void skip_blanks();

  const lysc_node* find(const lysc_node* parent, const Step& step) const;
  void open_step(const lysc_node* schema, const Step& step);
  [[nodiscard]] DocumentNode* chosen_key(const lysc_node* schema);
  void add_keys(const lysc_node* schema, const Step& step);

  const Models& models_;
  const std::string& path_;
  std::optional<Operation> operation_;  // of the node that the path names
  std::string_view left_;               // of the path, unread
  std::string walked_;                  // the steps so far, without predicates
  TreeBuilder builder_;
};

Document PathReader::read() {
  if (path_.find('\0') != std::string::npos) fail("a NUL character in the path");
  if (utf8_length(path_) < path_.size()) fail("not UTF-8 text");
  const lysc_node* schema = nullptr;
  std::size_t depth = 0;
  do {
    const auto step = take_step();
    schema = find(schema, step);
    walked_ = walked_ + '/' + std::string(step.tag);
    if (DocumentNode* key = operation_ && left_.empty() ? chosen_key(schema) : nullptr) {
      key->operation = operation_;
      break;
    }
    open_step(schema, step);
    ++depth;
    if (left_.empty()) builder_.current().operation = operation_;
  } while (!left_.empty());
  for (; depth > 0; --depth) builder_.close();
  return builder_.finish();
}

// The key leaf of the entry that a path is in, when the entry was chosen by it.
DocumentNode* PathReader::chosen_key(const lysc_node* schema) {
  if (builder_.at_top()) return nullptr;
  const auto keys = builder_.children();
  const auto found = std::find_if(keys.begin(), keys.end(), [schema](const DocumentNode& key) {
    return key.schema == schema && is_key(key);
  });
  return found == keys.end() ? nullptr : &*found;
}

Step PathReader::take_step() {
  if (!left_.starts_with('/'))
    fail(walked_.empty() ? "the path does not begin with \"/\"" : "no \"/\" after " + walked_);
  left_.remove_prefix(1);
  Step step;
  step.tag = take_name();
  if (left_.starts_with(':')) {
    left_.remove_prefix(1);
    step.module = std::exchange(step.tag, take_name());
  }
  while (left_.starts_with('[')) step.predicates.push_back(take_predicate());
  return step;
}

Predicate PathReader::take_predicate() {
  Predicate predicate;
  take('[');
  if (left_.starts_with('.')) {
    predicate.name = left_.substr(0, 1);
    left_.remove_prefix(1);
  } else {
    predicate.name = take_name();
    if (left_.starts_with(':')) {
      left_.remove_prefix(1);
      predicate.name = take_name();
    }
  }
  take('=');
  const bool is_quoted = left_.starts_with('\'') || left_.starts_with('"');
  predicate.value = is_quoted ? take_quoted(predicate.name) : take_unquoted(predicate.name);
  skip_blanks();
  if (!left_.starts_with(']')) {
    const bool goes_on = !left_.empty() && left_.front() != '/';
    fail("no \"]\" after the value of " + in_quotes(predicate.name) +
         (goes_on ? "; a value with blanks, brackets or quotes is in quotes" : ""));
  }
  left_.remove_prefix(1);
  return predicate;
}

std::string_view PathReader::take_quoted(std::string_view name) {
  const auto end = left_.find(left_[0], 1);
  if (end == std::string_view::npos) {
    fail("the quotes around the value of " + in_quotes(name) + " are not closed");
  }
  const auto value = left_.substr(1, end - 1);
  left_.remove_prefix(end + 1);
  return value;
}

// A value that needs no quotes has no blanks and brackets in it.
std::string_view PathReader::take_unquoted(std::string_view name) {
  const auto value = left_.substr(0, left_.find_first_of("]['\" \t\r\n"));
  if (value.empty()) fail("no value of " + in_quotes(name));
  left_.remove_prefix(value.size());
  return value;
}

std::string_view PathReader::take_name() {
  const auto name = left_.substr(0, left_.find_first_of("/[]=: \t\r\n'\""));
  if (!is_identifier(name)) {
    const auto before = in_quotes(path_.substr(0, path_.size() - left_.size()));
    fail(name.empty() ? "no name after " + before
                      : in_quotes(name) + " after " + before + " is not a name");
  }
  left_.remove_prefix(name.size());
  return name;
}

// Takes a character that blanks may surround.
void PathReader::take(char expected) {
  skip_blanks();
  if (!left_.starts_with(expected)) fail("no \"" + std::string(1, expected) + "\" in a predicate");
  left_.remove_prefix(1);
  skip_blanks();
}

void PathReader::skip_blanks() {
  left_.remove_prefix(std::min(left_.find_first_not_of(kBlanks), left_.size()));
}

const lysc_node* PathReader::find(const lysc_node* parent, const Step& step) const {
  const auto where = walked_.empty() ? std::string() : " in " + walked_;
  const lysc_node* found = nullptr;
  if (!step.module.empty()) {
    const auto module_namespace = models_.namespace_of(step.module);
    if (module_namespace.empty()) {
      fail_at("no such module: " + in_quotes(step.module) + meant_node(models_, parent, step.tag),
              InputFault::Kind::kUnknownNamespace, step.tag);
    }
    found = models_.child(parent, step.tag, module_namespace);
  } else {
    found = models_.child(parent, step.tag, {});
  }
  if (found != nullptr) return found;

  if (step.module.empty()) found = builder_.only_child(parent, step.tag, 0, where);
  if (found == nullptr) {
    const auto name = step.module.empty() ? std::string(step.tag)
                                          : std::string(step.module) + ':' + std::string(step.tag);
    fail_at("no such node: " + in_quotes(name) + where + meant_node(models_, parent, step.tag),
            InputFault::Kind::kUnknownNode, step.tag);
  }
  return found;
}

void PathReader::open_step(const lysc_node* schema, const Step& step) {
  auto node = node_of(schema);
  const auto& predicates = step.predicates;
  switch (node.kind) {
    case NodeKind::kList:
      builder_.open(std::move(node));
      add_keys(schema, step);
      return;
    case NodeKind::kLeafList:
      if (predicates.size() > 1 || (predicates.size() == 1 && predicates[0].name != ".")) {
        fail("a value of " + walked_ + " is chosen by [.='VALUE']");
      }
      if (!predicates.empty()) node.value = predicates[0].value;
      break;
    default:
      if (!predicates.empty()) fail(walked_ + " is not a list");
  }
  builder_.open(std::move(node));
}

void PathReader::add_keys(const lysc_node* schema, const Step& step) {
  const auto& keys = Models::keys(schema);
  if (step.predicates.empty()) {
    // A read goes through all entries; an edit means one.
    if (operation_ && !left_.empty() && !keys.empty()) {
      fail_at("no keys for " + walked_, InputFault::Kind::kMissingNode, keys.front());
    }
    return;
  }
  for (const auto& predicate : step.predicates) {
    const auto is_same = [&predicate](const auto& other) { return other.name == predicate.name; };
    if (std::find(keys.begin(), keys.end(), predicate.name) == keys.end()) {
      fail_at(in_quotes(predicate.name) + " is not a key of " + walked_ +
                  did_you_mean(predicate.name, keys),
              InputFault::Kind::kUnknownNode, predicate.name);
    }
    if (std::count_if(step.predicates.begin(), step.predicates.end(), is_same) > 1) {
      fail("key " + in_quotes(predicate.name) + " of " + walked_ + " is given twice");
    }
  }
  for (const auto& key : keys) {
    const auto found =
        std::find_if(step.predicates.begin(), step.predicates.end(),
                     [&key](const auto& predicate) { return predicate.name == key; });
    if (found == step.predicates.end()) {
      fail_at("key " + in_quotes(key) + " of " + walked_ + " is missing",
              InputFault::Kind::kMissingNode, key);
    }
    auto leaf = node_of(models_.child(schema, key, {}));
    leaf.value = found->value;
    builder_.add(std::move(leaf));
  }
}

}  // namespace

Document read_path(const Models& models, const std::string& path,
                   std::optional<Operation> operation) {
  return PathReader(models, path, operation).read();
}

}  // namespace ocifip
