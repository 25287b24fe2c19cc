#include "io/read_json.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/json_source.h"
#include "io/netconf.h"
#include "io/plain_json.h"
#include "io/text.h"
#include "io/tree_builder.h"
#include "ocifip/nearest_name.h"

namespace ocifip {
namespace {

// Room for the deepest node, each in a list, and for metadata without meaning below it.
constexpr std::size_t kDeepestScope = 4 * kDeepestNode;

// The metadata of a member, "@mtu": of its one value, or of each element of its array.
struct Metadata {
  std::string member;
  int line;
  bool is_array = false;
  std::vector<std::optional<std::string>> operations;
};

// What an opening brace or bracket began.
enum class ScopeKind {
  kNode,           // an object: a node, or the document
  kArray,          // the array of a member
  kOwnMetadata,    // "@": annotations of the object that it is in
  kMetadata,       // annotations of a member, or of an element of a member's array
  kMetadataArray,  // annotations of each element of a member's array
  kIgnored         // the value of an annotation without meaning here
};

struct Scope {
  ScopeKind kind;
  DocumentNode element{};            // kArray: what each element is named
  std::size_t count = 0;             // kArray: elements so far
  std::vector<Metadata> metadata{};  // kNode: of its members, until all of them are there
};

class JsonReader : public DocumentEvents {
 public:
  JsonReader(const Models& models, const std::string& name, JsonSource& source,
             OtherAnnotations annotations, const BodyPlace* place)
      : models_(models),
        builder_(models, name),
        source_(source),
        annotations_(annotations),
        place_(place) {
    if (place_ != nullptr) place_->open_way(builder_);
  }

  bool null() override { return scalar(std::nullopt); }
  bool boolean(bool value) override { return scalar(value ? "true" : "false"); }
  bool number_integer(std::int64_t value) override {
    return scalar(value == 0 ? "-0" : std::to_string(value));
  }
  bool number_unsigned(std::uint64_t value) override { return scalar(std::to_string(value)); }
  bool number_float(double /*value*/, const std::string& text) override { return scalar(text); }
  bool string(std::string& text) override { return scalar(std::move(check_string(text))); }
  bool start_object(std::size_t /*size*/) override;
  bool key(std::string& name) override;
  bool end_object() override;
  bool start_array(std::size_t /*size*/) override;
  bool end_array() override;
  bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                   const std::exception& exception) override {
    fail(json_reason(exception.what()));
  }

  Document finish() override {
    while (!builder_.at_top()) builder_.close();
    return builder_.finish();
  }
  [[nodiscard]] const lysc_node* elements() const override {
    return scopes_.back().kind == ScopeKind::kArray ? scopes_.back().element.schema : nullptr;
  }

 private:
  [[noreturn]] void fail(const std::string& reason) { builder_.fail(source_.line(), reason); }
  [[noreturn]] void fail_annotation(const std::string& reason) {
    builder_.fail_at(source_.line(), reason, InputFault::Kind::kUnknownAttribute, member_);
  }

  // The scope that the innermost metadata belongs to is its object's.
  Metadata& metadata() {
    const bool in_array = scopes_[scopes_.size() - 2].kind == ScopeKind::kMetadataArray;
    return scopes_[scopes_.size() - (in_array ? 3 : 2)].metadata.back();
  }

  void begin_body_object();
  void begin_body_array();
  void begin(ScopeKind kind) {
    if (scopes_.size() == kDeepestScope) fail("nested too deeply");
    scopes_.push_back({.kind = kind});
  }
  void begin_member_object();
  void begin_member_array();
  std::string& check_string(std::string& text);
  bool scalar(std::optional<std::string> value);
  void member_scalar(std::optional<std::string> value);
  void leaf(DocumentNode node, std::optional<std::string> value);
  void element_scalar(std::optional<std::string> value);
  void annotation(const std::optional<std::string>& value);
  void settle_empty_array(DocumentNode element);
  void settle_lone_null();
  void apply(const std::vector<Metadata>& all);

  const Models& models_;
  TreeBuilder builder_;
  JsonSource& source_;
  OtherAnnotations annotations_;
  const BodyPlace* place_;  // of a body; null for a document
  std::vector<Scope> scopes_;
  std::string member_;  // whose value comes next
  int member_line_ = 0;
};

std::string& JsonReader::check_string(std::string& text) {
  if (text.find('\0') != std::string::npos) fail("a NUL character in a string");
  return text;
}

bool JsonReader::key(std::string& name) {
  member_ = std::move(check_string(name));
  member_line_ = source_.line();
  return true;
}

bool JsonReader::scalar(std::optional<std::string> value) {
  if (scopes_.empty()) {
    if (place_ == nullptr) fail("the document is not an object");
    auto node = place_->target;
    node.line = source_.line();
    leaf(std::move(node), std::move(value));
    return true;
  }
  switch (scopes_.back().kind) {
    case ScopeKind::kNode:
      member_scalar(std::move(value));
      break;
    case ScopeKind::kArray:
      element_scalar(std::move(value));
      break;
    case ScopeKind::kOwnMetadata:
    case ScopeKind::kMetadata:
      annotation(value);
      break;
    case ScopeKind::kMetadataArray:
      if (value) fail("an array of metadata holds objects and null alone");
      scopes_[scopes_.size() - 2].metadata.back().operations.emplace_back();
      break;
    case ScopeKind::kIgnored:
      break;
  }
  return true;
}

void JsonReader::member_scalar(std::optional<std::string> value) {
  if (member_.starts_with('@')) {
    if (value) fail(in_quotes(member_) + " is not an object");
    return;
  }
  leaf(builder_.json_node(member_, member_line_), std::move(value));
}

void JsonReader::leaf(DocumentNode node, std::optional<std::string> value) {
  node.kind = NodeKind::kLeaf;
  if (!value && node.schema != nullptr && Models::is_empty_leaf(node.schema)) value.emplace();
  node.value = std::move(value);
  builder_.add(std::move(node));
}

void JsonReader::element_scalar(std::optional<std::string> value) {
  Scope& scope = scopes_.back();
  scope.count += 1;
  auto node = scope.element;
  node.kind = NodeKind::kLeafList;
  node.line = source_.line();
  node.value = std::move(value);
  builder_.add(std::move(node));
}

void JsonReader::annotation(const std::optional<std::string>& value) {
  if (member_ == kOperationAnnotation) {
    if (!value) fail("the operation is not a string");
    if (scopes_.back().kind == ScopeKind::kOwnMetadata) {
      builder_.annotate(builder_.current(), *value, source_.line());
    } else {
      metadata().operations.back() = value;
    }
  } else if (member_ == "operation" || member_.ends_with(":operation")) {
    // Passed over, it would turn a delete into a write.
    fail_annotation("unknown annotation " + in_quotes(member_) + builder_.here() +
                    "; an operation is \"" + std::string(kOperationAnnotation) + "\"");
  } else if (annotations_ == OtherAnnotations::kRefused) {
    fail_annotation("an annotation, " + in_quotes(member_) + builder_.here());
  } else if (!models_.has_annotation(member_)) {
    fail_annotation("unknown annotation " + in_quotes(member_) + builder_.here() +
                    did_you_mean(member_, {std::string(kOperationAnnotation)}));
  }
}

bool JsonReader::start_object(std::size_t /*size*/) {
  if (scopes_.empty()) {
    if (place_ != nullptr) begin_body_object();
    begin(ScopeKind::kNode);
    return true;
  }
  Scope& scope = scopes_.back();
  switch (scope.kind) {
    case ScopeKind::kNode:
      begin_member_object();
      break;
    case ScopeKind::kArray: {
      scope.count += 1;
      auto entry = scope.element;
      entry.kind = NodeKind::kList;
      entry.line = source_.line();
      builder_.open(std::move(entry));
      begin(ScopeKind::kNode);
      break;
    }
    case ScopeKind::kMetadataArray:
      scopes_[scopes_.size() - 2].metadata.back().operations.emplace_back();
      begin(ScopeKind::kMetadata);
      break;
    case ScopeKind::kOwnMetadata:
    case ScopeKind::kMetadata:
      annotation(std::nullopt);
      begin(ScopeKind::kIgnored);
      break;
    case ScopeKind::kIgnored:
      begin(ScopeKind::kIgnored);
  }
  return true;
}

// An object describes the entry whose keys the path names.
void JsonReader::begin_body_object() {
  auto node = place_->target;
  const bool is_entry = node.kind == NodeKind::kList && !place_->keys.empty();
  node.kind = is_entry ? NodeKind::kList : NodeKind::kContainer;
  node.line = source_.line();
  builder_.open(std::move(node));
}

void JsonReader::begin_body_array() {
  if (place_ == nullptr) fail("the document is not an object");
  if (!place_->keys.empty()) fail("the body of an entry is not an object");
  begin(ScopeKind::kArray);
  scopes_.back().element = place_->target;
  scopes_.back().element.line = source_.line();
}

void JsonReader::begin_member_object() {
  if (member_ == "@") {
    if (builder_.at_top()) fail("metadata outside of a node");
    begin(ScopeKind::kOwnMetadata);
  } else if (member_.starts_with('@')) {
    scopes_.back().metadata.push_back({member_.substr(1), member_line_, false, {std::nullopt}});
    begin(ScopeKind::kMetadata);
  } else {
    builder_.open(builder_.json_node(member_, member_line_));
    begin(ScopeKind::kNode);
  }
}

bool JsonReader::end_object() {
  Scope scope = std::move(scopes_.back());
  scopes_.pop_back();
  if (scope.kind != ScopeKind::kNode) return true;
  apply(scope.metadata);
  if (!builder_.at_top()) builder_.close();
  return true;
}

bool JsonReader::start_array(std::size_t /*size*/) {
  if (scopes_.empty()) {
    begin_body_array();
    return true;
  }
  switch (scopes_.back().kind) {
    case ScopeKind::kNode:
      begin_member_array();
      break;
    case ScopeKind::kArray:
    case ScopeKind::kMetadataArray:
      fail("an array directly inside an array");
    case ScopeKind::kOwnMetadata:
    case ScopeKind::kMetadata:
      annotation(std::nullopt);
      begin(ScopeKind::kIgnored);
      break;
    case ScopeKind::kIgnored:
      begin(ScopeKind::kIgnored);
  }
  return true;
}

void JsonReader::begin_member_array() {
  if (member_ == "@") fail("\"@\" is not an object");
  if (member_.starts_with('@')) {
    scopes_.back().metadata.push_back({member_.substr(1), member_line_, true, {}});
    begin(ScopeKind::kMetadataArray);
  } else {
    auto element = builder_.json_node(member_, member_line_);
    begin(ScopeKind::kArray);
    scopes_.back().element = std::move(element);
  }
}

bool JsonReader::end_array() {
  Scope scope = std::move(scopes_.back());
  scopes_.pop_back();
  if (scope.kind != ScopeKind::kArray) return true;
  if (scope.count == 0) settle_empty_array(std::move(scope.element));
  if (scope.count == 1) settle_lone_null();
  return true;
}

// A list has no entries. Of all else the name remains, so that it is not passed over.
void JsonReader::settle_empty_array(DocumentNode element) {
  const auto* schema = element.schema;
  const auto kind = schema == nullptr ? NodeKind::kLeaf : Models::kind(schema);
  if (kind == NodeKind::kList || kind == NodeKind::kLeafList) return;
  element.kind = NodeKind::kLeafList;
  builder_.add(std::move(element));
}

// [null] is how JSON writes a leaf without a value, or one of type empty.
void JsonReader::settle_lone_null() {
  DocumentNode& node = builder_.children().back();
  const bool is_null = node.kind == NodeKind::kLeafList && !node.value;
  const bool is_leaf_list =
      node.schema != nullptr && Models::kind(node.schema) == NodeKind::kLeafList;
  if (!is_null || is_leaf_list) return;
  node.kind = NodeKind::kLeaf;
  if (node.schema != nullptr && Models::is_empty_leaf(node.schema)) node.value.emplace();
}

// Gives the members of the object that ends here their metadata.
void JsonReader::apply(const std::vector<Metadata>& all) {
  if (all.empty()) return;
  const auto name = [](const DocumentNode& node) { return node.tag + ':' + node.module_namespace; };
  std::unordered_map<std::string, std::vector<DocumentNode*>> members;
  for (auto& child : builder_.children()) members[name(child)].push_back(&child);

  for (const auto& metadata : all) {
    const auto found = members.find(name(builder_.json_node(metadata.member, metadata.line)));
    const auto quoted_name = in_quotes('@' + metadata.member);
    if (found == members.end()) {
      builder_.fail(metadata.line,
                    quoted_name + " is not beside what it annotates" + builder_.here());
    }
    const auto& nodes = found->second;
    if (metadata.is_array && nodes.front()->kind == NodeKind::kLeaf) {
      builder_.fail(metadata.line,
                    quoted_name + " is an array, but what it annotates is not" + builder_.here());
    }
    if (!metadata.is_array && nodes.size() != 1) {
      builder_.fail(metadata.line,
                    quoted_name + " is not an array, but what it annotates is" + builder_.here());
    }
    if (metadata.operations.size() > nodes.size()) {
      builder_.fail(metadata.line,
                    quoted_name + " has more elements than what it annotates" + builder_.here());
    }
    for (std::size_t at = 0; at < metadata.operations.size(); ++at) {
      const auto& operation = metadata.operations[at];
      if (operation) builder_.annotate(*nodes[at], *operation, metadata.line);
    }
  }
}

}  // namespace

std::unique_ptr<DocumentEvents> json_document(const Models& models, const std::string& name,
                                              JsonSource& source, OtherAnnotations annotations) {
  return std::make_unique<JsonReader>(models, name, source, annotations, nullptr);
}

Document read_json(const Models& models, const std::string& name, std::string_view text,
                   OtherAnnotations annotations, const BodyPlace* place) {
  JsonSource source(text);
  JsonReader reader(models, name, source, annotations, place);
  nlohmann::json::sax_parse(source.begin(), source.end(), &reader);
  return reader.finish();
}

Document read_plain_json(const Models& models, const std::string& name, const std::string& text) {
  const PlainJson json(text);
  JsonSource nowhere;
  JsonReader reader(models, name, nowhere, OtherAnnotations::kPassedOver, nullptr);
  send(json.top(), reader, {});
  return reader.finish();
}

}  // namespace ocifip
