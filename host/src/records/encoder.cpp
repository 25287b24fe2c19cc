#include "records/encoder.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "inet/inet.h"
#include "io/text.h"
#include "records/value_text.h"
#include "records/wire.h"

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;

// Where a value stands: a member or an element of what holds it. Written out for messages only.
class Place {
 public:
  explicit Place(const std::string& top) : member_(&top) {}
  Place(const Place& holder, const std::string& member) : holder_(&holder), member_(&member) {}
  Place(const Place& holder, std::size_t index) : holder_(&holder), index_(index) {}

  [[nodiscard]] std::string text() const {
    if (holder_ == nullptr) return *member_;
    return holder_->text() +
           (member_ == nullptr ? '[' + std::to_string(index_) + ']' : '.' + *member_);
  }

 private:
  const Place* holder_ = nullptr;
  const std::string* member_ = nullptr;
  std::size_t index_ = 0;
};

// Writes values behind each other. A value that is null is not given.
class Encoder {
 public:
  Encoder(const Schema& schema, const InterfaceHandles& handles)
      : schema_(schema), handles_(handles) {}

  void encode(const SchemaStructure& structure, const Json* fields, const Place& place);

  WireWriter& writer() { return writer_; }

 private:
  [[noreturn]] static void fail(const Place& place, const std::string& reason) {
    throw input_error(place.text(), 0, reason);
  }
  static const std::string& text_of(const Json& value, const Place& place);

  void encode(const SchemaType& type, const Json* value, const Place& place);
  void encode_given(const SchemaType& type, const Json& value, const Place& place);
  void encode_absent(const SchemaType& type, const Place& place);
  void encode_number(const SchemaType& type, const Json& value, const Place& place);
  void encode_text(const SchemaType& type, const Json& value, const Place& place);
  void encode_bytes(const SchemaType& type, const Json& value, const Place& place);
  void encode_elements(const SchemaType& type, const Json& value, const Place& place);

  const Schema& schema_;
  const InterfaceHandles& handles_;
  WireWriter writer_;
};

const std::string& Encoder::text_of(const Json& value, const Place& place) {
  if (!value.is_string()) fail(place, "not a string");
  return value.get_ref<const std::string&>();
}

void Encoder::encode(const SchemaStructure& structure, const Json* fields, const Place& place) {
  if (fields != nullptr) {
    if (!fields->is_object()) fail(place, "not an object");
    for (const auto& [name, value] : fields->items()) {
      const bool is_known =
          std::any_of(structure.fields.begin(), structure.fields.end(),
                      [&name = name](const SchemaField& field) { return field.name == name; });
      if (!is_known) fail(Place(place, in_short(name)), "unknown field");
    }
  }
  for (const SchemaField& field : structure.fields) {
    const auto found = fields == nullptr ? Json::const_iterator() : fields->find(field.name);
    const bool is_given = fields != nullptr && found != fields->end();
    encode(schema_.type(field), is_given ? &*found : nullptr, Place(place, field.name));
  }
}

void Encoder::encode(const SchemaType& type, const Json* value, const Place& place) {
  if (type.kind == TypeKind::kStructure) {
    encode(schema_.structure(type), value, place);
  } else if (value == nullptr) {
    encode_absent(type, place);
  } else {
    encode_given(type, *value, place);
  }
}

// Zero, "", an empty array or an absent member, all of which are zeros on the wire.
void Encoder::encode_absent(const SchemaType& type, const Place& place) {
  if (type.kind != TypeKind::kFixedArray) {
    writer_.put_zeros(type.extent.wire_minimum);
    return;
  }
  for (std::uint32_t i = 0; i < type.bound; ++i) {
    encode(schema_.element(type), nullptr, Place(place, i));
  }
}

void Encoder::encode_given(const SchemaType& type, const Json& value, const Place& place) {
  switch (type.kind) {
    case TypeKind::kIpv4: {
      const auto bytes = address_bytes(OMBRIX_AF_INET, text_of(value, place));
      if (!bytes) fail(place, "not an IPv4 address");
      return writer_.put(*bytes);
    }
    case TypeKind::kBoolean:
      if (!value.is_boolean()) fail(place, "not true or false");
      return writer_.put_number(value.get<bool>() ? 1 : 0, 1);
    case TypeKind::kText:
      return encode_text(type, value, place);
    case TypeKind::kBytes:
      return encode_bytes(type, value, place);
    case TypeKind::kArray:
      if (!value.is_array()) fail(place, "not an array");
      writer_.put_number(value.size(), 4);
      return encode_elements(type, value, place);
    case TypeKind::kFixedArray:
      if (!value.is_array()) fail(place, "not an array");
      if (value.size() > type.bound) {
        fail(place, "more than " + std::to_string(type.bound) + " elements");
      }
      return encode_elements(type, value, place);
    case TypeKind::kOptional:
      writer_.put_number(value.is_null() ? 0 : 1, 1);
      return value.is_null() ? void() : encode(schema_.element(type), &value, place);
    default:
      return encode_number(type, value, place);
  }
}

void Encoder::encode_number(const SchemaType& type, const Json& value, const Place& place) {
  if (type.hint == 'h' && value.is_string()) {
    const std::uint32_t handle = handles_(value.get_ref<const std::string&>());
    if (handle == 0) fail(place, "no such interface");
    return writer_.put_number(handle, type.extent.size);
  }
  const std::int64_t least =
      type.kind == TypeKind::kInteger32 ? std::numeric_limits<std::int32_t>::min() : 0;
  const std::uint64_t greatest =
      std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * type.extent.size);
  const bool is_negative =
      !value.is_number_unsigned() && value.is_number_integer() && value.get<std::int64_t>() < 0;
  const bool is_in_range =
      is_negative ? value.get<std::int64_t>() >= least
                  : value.is_number_integer() && value.get<std::uint64_t>() <= greatest;
  if (!is_in_range) {
    fail(place, "not a number from " + std::to_string(least) + " to " + std::to_string(greatest));
  }
  writer_.put_number(value.get<std::uint64_t>(), type.extent.size);
}

void Encoder::encode_text(const SchemaType& type, const Json& value, const Place& place) {
  const std::string& text = text_of(value, place);
  if (text.find('\0') != std::string::npos) fail(place, "a NUL character in a string");
  if (type.bound != 0 && text.size() > type.bound) {
    fail(place, "longer than " + std::to_string(type.bound) + " bytes");
  }
  writer_.put_text(text);
}

void Encoder::encode_bytes(const SchemaType& type, const Json& value, const Place& place) {
  const std::string& text = text_of(value, place);
  if (type.hint == 'S') {
    if (text.size() > type.bound) {
      fail(place, "longer than " + std::to_string(type.bound) + " bytes");
    }
    writer_.put(text);
    return writer_.put_zeros(type.bound - text.size());
  }
  const bool is_ipv6 = type.hint == 's' && type.bound == 16;
  const bool is_mac = type.hint == 'm' && type.bound == 6;
  const auto bytes = is_ipv6  ? address_bytes(OMBRIX_AF_INET6, text)
                     : is_mac ? mac_bytes(text)
                              : hexadecimal_bytes(text, type.bound);
  if (!bytes) {
    fail(place, is_ipv6  ? "not an IPv6 address"
                : is_mac ? "not a MAC address"
                         : "not " + std::to_string(2 * type.bound) + " hexadecimal digits");
  }
  writer_.put(*bytes);
}

void Encoder::encode_elements(const SchemaType& type, const Json& value, const Place& place) {
  const std::size_t count = std::max(value.size(), static_cast<std::size_t>(type.bound));
  for (std::size_t i = 0; i < count; ++i) {
    encode(schema_.element(type), i < value.size() ? &value[i] : nullptr, Place(place, i));
  }
}

}  // namespace

std::string encode_record(const RegisteredRecord& record, const Json& fields,
                          const std::string& place, const InterfaceHandles& handles) {
  const std::string of_record = "of the record " + in_quotes(record.name);
  if (!record.schema) {
    throw input_error(place, 0, "the schema " + of_record + " is empty: this build has none");
  }
  if (!record.schema->has_names() && !fields.empty()) {
    throw input_error(place, 0, "the schema " + of_record + " names no fields");
  }
  Encoder encoder(*record.schema, handles);
  encoder.writer().put(kRecordMark);
  encoder.writer().put_text(record.name);
  encoder.writer().put_number(record.major_version, 4);
  encoder.writer().put_number(record.minor_version, 4);
  encoder.encode(record.schema->record(), &fields, Place(place));
  return encoder.writer().bytes();
}

}  // namespace ocifip
