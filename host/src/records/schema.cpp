#include "records/schema.h"

#include <algorithm>
#include <optional>

#include "records/record_error.h"

namespace ocifip {
namespace {

static_assert(sizeof(void*) == 8 && sizeof(RecordArray) == 16, "records are laid out for 64 bits");

// Alignment that a filler brings about: that of the widest member there is.
constexpr std::size_t kFillerAlignment = 8;

// Numbers beyond this mean nothing anywhere in a schema.
constexpr std::uint32_t kLargestNumber = Schema::kLargest;

constexpr std::string_view kBlanks = " \t\r\n";

struct PlainType {
  char letter;
  TypeKind kind;
  Extent extent;
};

constexpr PlainType kPlainTypes[] = {
    {'N', TypeKind::kIpv4, {4, 4, 4}},      {'D', TypeKind::kUnsigned32, {4, 4, 4}},
    {'I', TypeKind::kInteger32, {4, 4, 4}}, {'H', TypeKind::kUnsigned64, {8, 8, 8}},
    {'C', TypeKind::kUnsigned8, {1, 1, 1}}, {'b', TypeKind::kBoolean, {4, 4, 1}},
    {'s', TypeKind::kText, {8, 8, 4}},
};
constexpr Extent kEnumeration = {4, 4, 4};
constexpr Extent kArray = {sizeof(RecordArray), alignof(RecordArray), 4};
constexpr Extent kOptional = {sizeof(void*), alignof(void*), 1};

std::size_t align(std::size_t offset, std::size_t alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_name_character(char c) {
  return is_digit(c) || is_letter(c) || c == '_' || c == '-' || c == '.';
}

}  // namespace

class SchemaReader {
 public:
  SchemaReader(std::string_view text, Schema& schema) : text_(text), schema_(schema) {}

  void read() {
    if (text_.size() > Schema::kLongestText) fail("the text is too long");
    while (!is_at_end()) {
      read_definition();
    }
    if (schema_.structures_.empty()) {
      fail("defines no structure");
    }
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw RecordError(kRecordSchemaMalformed, "the schema is malformed at character " +
                                                  std::to_string(at_ + 1) + ": " + reason);
  }

  [[nodiscard]] char peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
  }
  bool is_at_end() {
    at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
    return at_ == text_.size();
  }
  bool take(char wanted) {
    const bool is_there = peek() == wanted && at_ < text_.size();
    at_ += is_there ? 1 : 0;
    return is_there;
  }
  void require(char wanted) {
    if (!take(wanted)) fail(std::string("no \"") + wanted + "\"");
  }

  std::uint32_t read_number() {
    if (!is_digit(peek())) fail("no number");
    std::uint32_t number = 0;
    for (; is_digit(peek()); ++at_) {
      number = number * 10 + static_cast<std::uint32_t>(peek() - '0');
      if (number > kLargestNumber) fail("the number is too large");
    }
    return number;
  }

  // A name with the bracket that closes it; the one that opens it has been taken.
  std::string read_name(char closing) {
    const std::size_t begin = at_;
    while (is_name_character(peek())) ++at_;
    if (at_ == begin) fail("no name");
    std::string name(text_.substr(begin, at_ - begin));
    require(closing);
    return name;
  }

  // Whether a structure's definition begins here, not a reference to one.
  [[nodiscard]] bool is_definition() const {
    std::size_t ahead = 1;
    while (is_digit(peek(ahead))) ++ahead;
    return peek() == '$' && peek(ahead) == '=';
  }

  void read_definition();
  void read_structure_name();
  void read_field(SchemaStructure& structure);
  std::uint32_t read_type(std::uint32_t level);
  SchemaType read_plain();
  SchemaType read_numbered(std::uint32_t level);
  SchemaType read_reference();
  SchemaType read_container(TypeKind kind, const Extent& extent, std::uint32_t level);

  std::string_view text_;
  Schema& schema_;
  std::size_t at_ = 0;
};

void SchemaReader::read_structure_name() {
  const bool is_first = schema_.structures_.empty();
  const bool is_named = take('{');
  if (is_named) read_name('}');
  if (!is_first && is_named != schema_.has_names_) {
    fail("some structures have names and others have none");
  }
  schema_.has_names_ = is_named;
}

void SchemaReader::read_definition() {
  if (!is_definition()) fail("no definition of a structure");
  require('$');
  SchemaStructure structure;
  structure.number = read_number();
  for (const SchemaStructure& other : schema_.structures_) {
    if (other.number == structure.number) fail("a second definition of the structure");
  }
  require('=');
  read_structure_name();
  while (!is_at_end() && !is_definition()) {
    read_field(structure);
  }
  if (structure.fields.empty()) fail("a structure without fields");
  Extent& extent = structure.extent;
  extent.size = align(extent.size, extent.alignment);
  schema_.structures_.push_back(std::move(structure));
}

// A field with the fillers around it, which may stand before its name, too.
void SchemaReader::read_field(SchemaStructure& structure) {
  Extent& extent = structure.extent;
  const auto take_fillers = [&] {
    while (!is_at_end() && take('P')) {
      extent.size = align(extent.size, kFillerAlignment);
      extent.alignment = kFillerAlignment;
    }
  };
  take_fillers();
  if (is_at_end() || is_definition()) return;
  SchemaField field;
  if (schema_.has_names_) {
    require('{');
    field.name = read_name('}');
    for (const SchemaField& other : structure.fields) {
      if (other.name == field.name) fail("a second field \"" + field.name + "\"");
    }
    take_fillers();
  }
  field.type = read_type(1);
  const SchemaType& type = schema_.types_[field.type];
  field.offset = align(extent.size, type.extent.alignment);
  extent.size = field.offset + type.extent.size;
  extent.alignment = std::max(extent.alignment, type.extent.alignment);
  extent.wire_minimum += type.extent.wire_minimum;
  if (extent.size > Schema::kLargest) fail("the structure is too large");
  structure.depth = std::max(structure.depth, type.depth + 1);
  structure.has_pointers = structure.has_pointers || type.has_pointers;
  structure.fields.push_back(std::move(field));
}

// Reads a type and returns its index.
std::uint32_t SchemaReader::read_type(std::uint32_t level) {
  if (level > Schema::kDeepest) fail("nested too deeply");
  is_at_end();
  SchemaType type;
  if (take('[')) {
    read_name(']');
    require('e');
    type.kind = TypeKind::kEnumeration;
    type.extent = kEnumeration;
  } else if (is_digit(peek())) {
    type = read_numbered(level);
  } else if (take('$')) {
    type = read_reference();
  } else if (take('a')) {
    type = read_container(TypeKind::kArray, kArray, level);
  } else if (take('p')) {
    type = read_container(TypeKind::kOptional, kOptional, level);
  } else {
    type = read_plain();
  }
  if (type.depth > Schema::kDeepest) fail("nested too deeply");
  if (take('%')) {
    type.hint = peek();
    if (!is_letter(type.hint)) fail("no print hint");
    ++at_;
  }
  schema_.types_.push_back(type);
  return static_cast<std::uint32_t>(schema_.types_.size() - 1);
}

SchemaType SchemaReader::read_plain() {
  const auto* found = std::find_if(std::begin(kPlainTypes), std::end(kPlainTypes),
                                   [this](const PlainType& type) { return type.letter == peek(); });
  if (found == std::end(kPlainTypes)) fail("no type");
  ++at_;
  SchemaType type;
  type.kind = found->kind;
  type.extent = found->extent;
  type.has_pointers = found->kind == TypeKind::kText;
  return type;
}

// A number of bytes, a text of a bounded length, or a fixed array.
SchemaType SchemaReader::read_numbered(std::uint32_t level) {
  const std::uint32_t number = read_number();
  if (number == 0) fail("the number is 0");
  SchemaType type;
  if (take('A')) {
    type = read_container(TypeKind::kFixedArray, {}, level);
    const SchemaType& element = schema_.element(type);
    if (element.extent.size > Schema::kLargest / number) fail("the array is too large");
    type.extent = {number * element.extent.size, element.extent.alignment,
                   number * element.extent.wire_minimum};
    type.has_pointers = element.has_pointers;
  } else if (peek() == 's') {
    type = read_plain();
  } else {
    require('x');
    type.kind = TypeKind::kBytes;
    type.extent = {number, 1, number};
  }
  type.bound = number;
  return type;
}

SchemaType SchemaReader::read_reference() {
  const std::uint32_t number = read_number();
  const auto found =
      std::find_if(schema_.structures_.begin(), schema_.structures_.end(),
                   [number](const SchemaStructure& each) { return each.number == number; });
  if (found == schema_.structures_.end()) {
    fail("structure " + std::to_string(number) + " is not defined before it is used");
  }
  SchemaType type;
  type.kind = TypeKind::kStructure;
  type.index = static_cast<std::uint32_t>(found - schema_.structures_.begin());
  type.depth = found->depth;
  type.has_pointers = found->has_pointers;
  type.extent = found->extent;
  return type;
}

SchemaType SchemaReader::read_container(TypeKind kind, const Extent& extent, std::uint32_t level) {
  require('(');
  SchemaType type;
  type.kind = kind;
  type.extent = extent;
  type.has_pointers = true;
  type.index = read_type(level + 1);
  type.depth = schema_.types_[type.index].depth + 1;
  require(')');
  return type;
}

Schema::Schema(std::string_view text) { SchemaReader(text, *this).read(); }

}  // namespace ocifip
