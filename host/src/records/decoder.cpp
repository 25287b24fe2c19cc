// Decoding, for bag/bag.h.
#include "records/decoder.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "records/codec_result.h"
#include "records/record_error.h"
#include "records/wire.h"

namespace ocifip {
namespace {

std::string_view text_of(const char* text) { return text == nullptr ? "" : text; }

template <typename Value>
void store(std::byte* place, Value value) {
  std::memcpy(place, &value, sizeof value);
}

template <typename Value>
Value load(const std::byte* place) {
  Value value;
  std::memcpy(&value, place, sizeof value);
  return value;
}

std::byte* allocate(std::size_t count, std::size_t size) {
  void* items = std::calloc(count, size);
  if (items == nullptr) throw std::bad_alloc();
  return static_cast<std::byte*>(items);
}

class Decoder {
 public:
  Decoder(const Schema& schema, WireReader& reader) : schema_(schema), reader_(reader) {}

  void decode(const SchemaStructure& structure, std::byte* place) {
    for (const SchemaField& field : structure.fields) {
      decode(schema_.type(field), place + field.offset);
    }
  }

 private:
  void decode(const SchemaType& type, std::byte* place);
  void decode_boolean(std::byte* place);
  void decode_text(const SchemaType& type, std::byte* place);
  void decode_array(const SchemaType& type, std::byte* place);
  void decode_optional(const SchemaType& type, std::byte* place);
  void decode_items(const SchemaType& element, std::byte* items, std::size_t count);
  void copy(std::byte* place, std::size_t size) {
    std::memcpy(place, reader_.take(size).data(), size);
  }

  const Schema& schema_;
  WireReader& reader_;
};

void Decoder::decode(const SchemaType& type, std::byte* place) {
  switch (type.kind) {
    case TypeKind::kIpv4:  // stays in network order
      return copy(place, 4);
    case TypeKind::kUnsigned32:
    case TypeKind::kInteger32:
    case TypeKind::kEnumeration:
      return store(place, static_cast<std::uint32_t>(reader_.take_number(4)));
    case TypeKind::kUnsigned64:
      return store(place, reader_.take_number(8));
    case TypeKind::kUnsigned8:
      return copy(place, 1);
    case TypeKind::kBoolean:
      return decode_boolean(place);
    case TypeKind::kText:
      return decode_text(type, place);
    case TypeKind::kBytes:
      return copy(place, type.bound);
    case TypeKind::kArray:
      return decode_array(type, place);
    case TypeKind::kOptional:
      return decode_optional(type, place);
    case TypeKind::kFixedArray:
      return decode_items(schema_.element(type), place, type.bound);
    case TypeKind::kStructure:
      return decode(schema_.structure(type), place);
  }
}

void Decoder::decode_boolean(std::byte* place) {
  const std::uint64_t value = reader_.take_number(1);
  if (value > 1) WireReader::fail("has a boolean that is neither 0 nor 1");
  store(place, static_cast<std::uint32_t>(value));
}

void Decoder::decode_text(const SchemaType& type, std::byte* place) {
  const std::string_view text = reader_.take_text();
  if (type.bound != 0 && text.size() > type.bound) WireReader::fail("has a text that is too long");
  if (text.find('\0') != std::string_view::npos) WireReader::fail("has a NUL in a text");
  std::byte* copy = allocate(text.size() + 1, 1);
  std::memcpy(copy, text.data(), text.size());
  store(place, copy);
}

// Nothing is allocated for elements that the bytes that are left cannot hold.
void Decoder::decode_array(const SchemaType& type, std::byte* place) {
  const SchemaType& element = schema_.element(type);
  const auto count = static_cast<std::uint32_t>(reader_.take_number(4));
  if (count > reader_.left() / element.extent.wire_minimum) WireReader::fail("ends early");
  if (count == 0) return;
  std::byte* items = allocate(count, element.extent.size);
  store(place, RecordArray{count, items});
  decode_items(element, items, count);
}

void Decoder::decode_optional(const SchemaType& type, std::byte* place) {
  const std::uint64_t is_there = reader_.take_number(1);
  if (is_there > 1) WireReader::fail("has an optional member that is neither there nor absent");
  if (is_there == 0) return;
  const SchemaType& element = schema_.element(type);
  std::byte* member = allocate(1, element.extent.size);
  store(place, member);
  decode(element, member);
}

void Decoder::decode_items(const SchemaType& element, std::byte* items, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    decode(element, items + i * element.extent.size);
  }
}

// Frees what lies outside of a structure. What has not been decoded yet is zeros.
class Releaser {
 public:
  explicit Releaser(const Schema& schema) : schema_(schema) {}

  void release(const SchemaStructure& structure, std::byte* place) {
    for (const SchemaField& field : structure.fields) {
      release(schema_.type(field), place + field.offset);
    }
  }

 private:
  void release(const SchemaType& type, std::byte* place);
  void release_items(const SchemaType& element, std::byte* items, std::size_t count) {
    for (std::size_t i = 0; element.has_pointers && i < count; ++i) {
      release(element, items + i * element.extent.size);
    }
  }
  // Frees what a pointer leads to, and clears the pointer.
  static void free_pointer(std::byte* place) {
    std::free(load<void*>(place));
    store<void*>(place, nullptr);
  }

  const Schema& schema_;
};

void Releaser::release(const SchemaType& type, std::byte* place) {
  switch (type.kind) {
    case TypeKind::kText:
      return free_pointer(place);
    case TypeKind::kArray: {
      const auto array = load<RecordArray>(place);
      release_items(schema_.element(type), static_cast<std::byte*>(array.items), array.count);
      std::free(array.items);
      return store(place, RecordArray{});
    }
    case TypeKind::kOptional: {
      auto* member = load<std::byte*>(place);
      release_items(schema_.element(type), member, member == nullptr ? 0 : 1);
      return free_pointer(place);
    }
    case TypeKind::kFixedArray:
      return release_items(schema_.element(type), place, type.bound);
    case TypeKind::kStructure:
      return release(schema_.structure(type), place);
    default:
      return;
  }
}

// Takes the head of a record, and fails when it is not of the descriptor's name and version.
void check_head(WireReader& reader, const bag_descriptor& descriptor) {
  const auto mark = reader.take(kRecordMark.size());
  if (std::memcmp(mark.data(), kRecordMark.data(), mark.size()) != 0) {
    WireReader::fail("does not begin with the mark of one");
  }
  const std::string_view name = reader.take_text();
  const std::uint64_t major = reader.take_number(4);
  const std::uint64_t minor = reader.take_number(4);
  if (name != text_of(descriptor.name)) {
    throw RecordError(kRecordMismatch, "the record is of another name");
  }
  if (major != descriptor.major_version || minor != descriptor.minor_version) {
    throw RecordError(kRecordMismatch, "the record is of another version");
  }
}

}  // namespace

Schema schema_of(const bag_descriptor& descriptor) {
  const std::string_view named = text_of(descriptor.named_schema);
  const std::string_view text = named.empty() ? text_of(descriptor.compact_schema) : named;
  if (text.empty()) {
    throw RecordError(kRecordSchemaMissing, "the record's descriptor has no schema");
  }
  Schema schema(text);
  if (descriptor.layout == nullptr || schema.record().extent.size != descriptor.layout[1]) {
    throw RecordError(kRecordSchemaLayout, "the schema's structure has " +
                                               std::to_string(schema.record().extent.size) +
                                               " bytes, its descriptor says otherwise");
  }
  return schema;
}

void decode_record(std::span<const std::byte> record, void* structure,
                   const bag_descriptor& descriptor) {
  if (descriptor.layout != nullptr) std::memset(structure, 0, descriptor.layout[1]);
  const Schema schema = schema_of(descriptor);
  WireReader reader(record);
  check_head(reader, descriptor);
  auto* place = static_cast<std::byte*>(structure);
  try {
    Decoder(schema, reader).decode(schema.record(), place);
    if (reader.left() != 0) WireReader::fail("has bytes behind its end");
  } catch (...) {
    Releaser(schema).release(schema.record(), place);
    std::memset(structure, 0, descriptor.layout[1]);
    throw;
  }
}

}  // namespace ocifip

using ocifip::kInvalidArgument;

extern "C" {

uint32_t bag_decode(const void* buffer, uint32_t length, void* structure,
                    const bag_descriptor* descriptor) {
  if ((buffer == nullptr && length != 0) || structure == nullptr || descriptor == nullptr) {
    return kInvalidArgument;
  }
  return ocifip::codec_result([&] {
    ocifip::decode_record({static_cast<const std::byte*>(buffer), length}, structure, *descriptor);
  });
}

void bag_free_indirections(void* structure, const bag_descriptor* descriptor) {
  if (structure == nullptr || descriptor == nullptr) {
    return;
  }
  // A descriptor that nothing can be decoded with has nothing to free.
  ocifip::codec_result([&] {
    const ocifip::Schema schema = ocifip::schema_of(*descriptor);
    ocifip::Releaser(schema).release(schema.record(), static_cast<std::byte*>(structure));
  });
}

}  // extern "C"
