#include "io/plain_json.h"

#include <cstddef>
#include <string>
#include <unordered_set>

namespace ocifip {
namespace {

using Json = nlohmann::ordered_json;
using simdjson::dom::element_type;

constexpr std::size_t kDeepest = 64;  // of values that become objects of nlohmann-json

// Whether a text may hold the number -0, which is told from 0 where a number is not expected.
bool may_hold_minus_zero(std::string_view text) {
  for (auto at = text.find("-0"); at != std::string_view::npos; at = text.find("-0", at + 1)) {
    if (at == 0 || std::string_view(":,[ \t\r\n").find(text[at - 1]) != std::string_view::npos) {
      return true;
    }
  }
  return false;
}

template <class Result>
Result take(simdjson::simdjson_result<Result> result) {
  Result value;
  if (std::move(result).get(value) != simdjson::SUCCESS) throw NotPlain();
  return value;
}

// A name that is twice in an object.
void check_names(const simdjson::dom::object& object) {
  std::unordered_set<std::string_view> names;
  if (object.size() < 2) return;
  for (const auto& member : object) {
    if (!names.insert(member.key).second) throw NotPlain();
  }
}

Json to_json(const PlainJson::Value& value, std::size_t depth) {
  if (depth > kDeepest) throw NotPlain();
  switch (value.type()) {
    case element_type::OBJECT: {
      Json object = Json::object();
      auto& members = object.get_ref<Json::object_t&>();
      check_names(take(value.get_object()));
      for (const auto& member : take(value.get_object())) {
        // It is known to be new: nothing has to be looked for.
        members.Json::object_t::Container::emplace_back(std::string(member.key),
                                                        to_json(member.value, depth + 1));
      }
      return object;
    }
    case element_type::ARRAY: {
      Json array = Json::array();
      for (const PlainJson::Value element : take(value.get_array())) {
        array.push_back(to_json(element, depth + 1));
      }
      return array;
    }
    case element_type::STRING:
      return std::string(take(value.get_string()));
    case element_type::INT64: {
      const std::int64_t number = take(value.get_int64());
      return number < 0 ? Json(number) : Json(static_cast<std::uint64_t>(number));
    }
    case element_type::UINT64:
      return take(value.get_uint64());
    case element_type::BOOL:
      return take(value.get_bool());
    case element_type::NULL_VALUE:
      return nullptr;
    default:
      throw NotPlain();
  }
}

class Sender {
 public:
  Sender(JsonEvents& events, const std::function<ElementFilter()>& choose)
      : events_(events), choose_(choose) {}

  void send(const PlainJson::Value& value) {
    switch (value.type()) {
      case element_type::OBJECT:
        send_object(take(value.get_object()));
        break;
      case element_type::ARRAY:
        send_array(take(value.get_array()));
        break;
      case element_type::STRING:
        text_ = take(value.get_string());
        events_.string(text_);
        break;
      case element_type::INT64: {
        const std::int64_t number = take(value.get_int64());
        number < 0 ? events_.number_integer(number)
                   : events_.number_unsigned(static_cast<std::uint64_t>(number));
        break;
      }
      case element_type::UINT64:
        events_.number_unsigned(take(value.get_uint64()));
        break;
      case element_type::BOOL:
        events_.boolean(take(value.get_bool()));
        break;
      case element_type::NULL_VALUE:
        events_.null();
        break;
      default:
        throw NotPlain();  // how a fraction was written is not known any more
    }
  }

 private:
  void send_object(const simdjson::dom::object& object) {
    events_.start_object(object.size());
    for (const auto& member : object) {
      text_ = member.key;
      events_.key(text_);
      send(member.value);
    }
    events_.end_object();
  }

  void send_array(const simdjson::dom::array& array) {
    events_.start_array(array.size());
    const ElementFilter is_chosen = choose_ && !is_within_chosen_ ? choose_() : ElementFilter();
    if (is_chosen) is_within_chosen_ = true;
    for (const PlainJson::Value element : array) {
      if (!is_chosen || is_chosen(element)) send(element);
    }
    if (is_chosen) is_within_chosen_ = false;
    events_.end_array();
  }

  JsonEvents& events_;
  const std::function<ElementFilter()>& choose_;
  bool is_within_chosen_ = false;
  std::string text_;  // of one event; the reader may move it away
};

}  // namespace

PlainJson::PlainJson(const std::string& text) {
  if (may_hold_minus_zero(text)) throw NotPlain();
  const bool has_room = text.capacity() - text.size() >= simdjson::SIMDJSON_PADDING;
  if (parser_.parse(text.data(), text.size(), !has_room).get(top_) != simdjson::SUCCESS) {
    throw NotPlain();
  }
}

std::string_view object_text(const std::string& text, std::string_view name) {
  simdjson::ondemand::parser parser;
  simdjson::ondemand::document document;
  simdjson::ondemand::object member;
  std::string_view found;
  const simdjson::padded_string_view padded(text.data(), text.size(), text.capacity());
  if (parser.iterate(padded).get(document) != simdjson::SUCCESS ||
      document.find_field(name).get_object().get(member) != simdjson::SUCCESS ||
      member.raw_json().get(found) != simdjson::SUCCESS) {
    return {};
  }
  return found.substr(0, found.rfind('}') + 1);  // what follows is space
}

nlohmann::ordered_json to_json(PlainJson::Value value) { return to_json(value, 1); }

void send(PlainJson::Value value, JsonEvents& events,
          const std::function<ElementFilter()>& choose) {
  Sender(events, choose).send(value);
}

}  // namespace ocifip
