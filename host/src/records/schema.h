// The schema of a record, read from its text, with the layout that a C compiler gives the decoded
// structure. docs/records.md has the language.
#ifndef OCIFIP_HOST_RECORDS_SCHEMA_H_
#define OCIFIP_HOST_RECORDS_SCHEMA_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ocifip {

enum class TypeKind : std::uint8_t {
  kIpv4,         // N
  kUnsigned32,   // D
  kInteger32,    // I
  kUnsigned64,   // H
  kUnsigned8,    // C
  kBoolean,      // b
  kEnumeration,  // e
  kText,         // s
  kBytes,        // x
  kArray,        // a
  kOptional,     // p
  kFixedArray,   // A
  kStructure     // $
};

// Room that a value takes in the structure and at least on the wire, both in bytes.
struct Extent {
  std::size_t size = 0;
  std::size_t alignment = 1;
  std::size_t wire_minimum = 0;
};

struct SchemaType {
  TypeKind kind = TypeKind::kUnsigned8;
  char hint = '\0';  // the print hint's letter
  std::uint32_t bound =
      0;  // longest text, 0 for any; number of bytes, or of a fixed array's elements
  std::uint32_t index = 0;  // of the element's type, or of the structure
  std::uint32_t depth = 0;  // levels of types below this one
  bool has_pointers = false;
  Extent extent;
};

struct SchemaField {
  std::string name;  // "" in a schema without names
  std::uint32_t type = 0;
  std::size_t offset = 0;
};

struct SchemaStructure {
  std::uint32_t number = 0;
  std::vector<SchemaField> fields;
  std::uint32_t depth = 0;
  bool has_pointers = false;
  Extent extent;
};

class Schema {
 public:
  // Reads a schema with or without names. Throws RecordError that says where the text departs from
  // the language.
  explicit Schema(std::string_view text);

  static constexpr std::size_t kLongestText = std::size_t{1} << 16;
  static constexpr std::size_t kLargest = std::size_t{1} << 20;  // structure, in bytes
  static constexpr std::uint32_t kDeepest = 32;                  // levels of types within types

  // The structure that is the record itself: the last that is defined.
  [[nodiscard]] const SchemaStructure& record() const { return structures_.back(); }
  [[nodiscard]] const SchemaType& type(const SchemaField& field) const {
    return types_[field.type];
  }
  [[nodiscard]] const SchemaType& element(const SchemaType& type) const {
    return types_[type.index];
  }
  [[nodiscard]] const SchemaStructure& structure(const SchemaType& type) const {
    return structures_[type.index];
  }
  [[nodiscard]] bool has_names() const { return has_names_; }

 private:
  friend class SchemaReader;

  std::vector<SchemaStructure> structures_;
  std::vector<SchemaType> types_;
  bool has_names_ = false;
};

// A counted array as it lies in a structure.
struct RecordArray {
  std::uint32_t count;
  void* items;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_SCHEMA_H_
