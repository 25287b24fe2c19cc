#include "io/json_value.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <string_view>

#include "io/leaf_types.h"

namespace ocifip {
namespace {

// Whether a value can be written as a JSON number without a change.
bool is_json_integer(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const bool has_digits = !text.empty() && std::all_of(text.begin(), text.end(),
                                                       [](char c) { return c >= '0' && c <= '9'; });
  return has_digits && (text.size() == 1 || text[0] != '0');
}

JsonForm form_of(LY_DATA_TYPE type, std::string_view value) {
  switch (type) {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
      return is_json_integer(value) ? JsonForm::kBare : JsonForm::kString;
    case LY_TYPE_BOOL:
      return JsonForm::kBare;
    case LY_TYPE_EMPTY:
      return JsonForm::kEmpty;
    default:
      return JsonForm::kString;
  }
}

// Whether a type has only values that JSON writes as strings, which then need no check.
bool is_always_string(const lysc_type* type) {
  switch (type->basetype) {
    case LY_TYPE_LEAFREF:
      return is_always_string(reinterpret_cast<const lysc_type_leafref*>(type)->realtype);
    case LY_TYPE_UNION: {
      lysc_type* const* members = reinterpret_cast<const lysc_type_union*>(type)->types;
      return std::all_of(members, members + LY_ARRAY_COUNT(members), is_always_string);
    }
    default:
      return form_of(type->basetype, "0") == JsonForm::kString;
  }
}

}  // namespace

JsonForm json_form(const DocumentNode& leaf) {
  const auto* schema = leaf.schema;
  if (schema == nullptr || (schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) == 0) {
    return JsonForm::kString;
  }
  const auto* type = schema->nodetype == LYS_LEAF
                         ? reinterpret_cast<const lysc_node_leaf*>(schema)->type
                         : reinterpret_cast<const lysc_node_leaflist*>(schema)->type;
  if (is_always_string(type)) return JsonForm::kString;
  if (is_plain_number(type, *leaf.value)) return JsonForm::kBare;

  const lysc_type* real_type = type;
  const auto result = lyd_value_validate(nullptr, schema, leaf.value->c_str(), leaf.value->size(),
                                         nullptr, &real_type, nullptr);
  // What a reference refers to is not there to be looked at.
  const bool is_accepted = result == LY_SUCCESS || result == LY_EINCOMPLETE;
  return is_accepted ? form_of(real_type->basetype, *leaf.value) : JsonForm::kString;
}

}  // namespace ocifip
