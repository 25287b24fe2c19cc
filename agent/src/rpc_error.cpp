#include "rpc_error.h"

#include <array>
#include <string_view>

#include "ocifip/messages.h"
#include "xml.h"

namespace ocifip::agent {
namespace {

// The words that refusals have for their codes, as tags.
constexpr std::array<std::pair<std::string_view, const char*>, 4> kRefusals = {{
    {"unsupported", tags::kNotSupported},
    {"data-missing", tags::kDataMissing},
    {"data-exists", tags::kDataExists},
    {"list-key", tags::kMissingElement},
}};

const char* tag_of(const Refusal& refusal) {
  for (const auto& [name, tag] : kRefusals) {
    if (name == refusal.code_name()) return tag;
  }
  return tags::kFailed;
}

const char* tag_of(InputFault::Kind kind) {
  using Kind = InputFault::Kind;
  switch (kind) {
    case Kind::kUnknownNode:
      return tags::kUnknownElement;
    case Kind::kUnknownNamespace:
      return tags::kUnknownNamespace;
    case Kind::kUnknownAttribute:
      return tags::kUnknownAttribute;
    case Kind::kBadValue:
      return tags::kInvalidValue;
    case Kind::kMissingNode:
      return tags::kMissingElement;
    case Kind::kOther:
    case Kind::kMalformed:
    case Kind::kNotSaved:
      break;
  }
  return tags::kFailed;
}

// What error-info calls the element of an error with a tag; null where it names none.
const char* named_in_info(std::string_view tag) {
  if (tag == tags::kMissingElement || tag == tags::kUnknownElement || tag == tags::kBadElement ||
      tag == tags::kUnknownNamespace || tag == tags::kUnknownAttribute) {
    return "bad-element";
  }
  return nullptr;
}

// An error about an element, with the name that the standard wants in error-info.
void name_element(RpcError& error, std::string_view name) {
  const char* info = named_in_info(error.tag);
  if (info != nullptr && !name.empty()) error.info = element(info, name);
}

std::string print(const RpcError& error) {
  std::string text = "<rpc-error>" + element("error-type", error.type) +
                     element("error-tag", error.tag) + element("error-severity", "error");
  if (!error.app_tag.empty()) text += element("error-app-tag", error.app_tag);
  if (!error.path.empty()) text += element("error-path", error.path);
  text += "<error-message xml:lang=\"en\">" + escaped(error.message) + "</error-message>";
  if (!error.info.empty()) text += "<error-info>" + error.info + "</error-info>";
  return text + "</rpc-error>";
}

}  // namespace

RpcError element_error(const char* tag, std::string_view element, std::string message) {
  RpcError error = {tag, std::move(message)};
  name_element(error, element);
  return error;
}

RpcError error_of(const Refusal& refusal) {
  RpcError error = {tag_of(refusal), refusal.sentence(), "application", refusal.path,
                    refusal.code_text()};
  if (error.message.empty()) error.message = refusal.text();
  name_element(error, refusal.tag);
  return error;
}

RpcError error_of(const InputError& error) {
  const InputFault& fault = error.fault();
  RpcError told = {tag_of(fault.kind), fault.reason, "application", fault.path};
  if (told.message.empty()) told.message = error.what();
  name_element(told, fault.tag);
  return told;
}

std::string print(const std::vector<RpcError>& errors) {
  std::string text;
  for (const RpcError& error : errors) text += print(error);
  return text;
}

}  // namespace ocifip::agent
