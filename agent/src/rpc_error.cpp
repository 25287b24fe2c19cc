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
    {"list-key", tags::kInvalidValue},
}};

const char* tag_of(const Refusal& refusal) {
  if (!refusal.missing_key.empty()) return tags::kMissingElement;
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
    case Kind::kBadAttribute:
      return tags::kBadAttribute;
    case Kind::kBadValue:
      return tags::kInvalidValue;
    case Kind::kMissingNode:
      return tags::kMissingElement;
    case Kind::kNotSaved:
      return tags::kResourceDenied;
    case Kind::kOther:
    case Kind::kMalformed:
      break;
  }
  return tags::kFailed;
}

// What an error is about, where the standard wants it in error-info.
void name_element(RpcError& error, std::string_view name, std::string_view name_space) {
  if (name.empty()) return;
  if (error.tag == tags::kMissingElement || error.tag == tags::kUnknownElement ||
      error.tag == tags::kBadElement || error.tag == tags::kUnknownNamespace) {
    error.info = element("bad-element", name);
  }
  if (error.tag == tags::kUnknownNamespace) error.info += element("bad-namespace", name_space);
}

void name_attribute(RpcError& error, std::string_view attribute, std::string_view of) {
  error.info = element("bad-attribute", attribute);
  if (!of.empty()) error.info += element("bad-element", of);
}

std::string print(const RpcError& error, const PathPrinter& print_path) {
  std::string text = "<rpc-error>" + element("error-type", error.type) +
                     element("error-tag", error.tag) + element("error-severity", "error");
  if (!error.app_tag.empty()) text += element("error-app-tag", error.app_tag);
  if (!error.path.empty() && print_path) text += print_path("error-path", error.path);
  text += "<error-message xml:lang=\"en\">" + escaped(error.message) + "</error-message>";
  if (!error.info.empty()) text += "<error-info>" + error.info + "</error-info>";
  return text + "</rpc-error>";
}

}  // namespace

RpcError element_error(const char* tag, std::string_view element, std::string message,
                       std::string_view name_space) {
  RpcError error = {tag, std::move(message)};
  name_element(error, element, name_space);
  return error;
}

RpcError attribute_error(const char* tag, std::string_view attribute, std::string_view of,
                         std::string message) {
  RpcError error = {tag, std::move(message)};
  name_attribute(error, attribute, of);
  return error;
}

RpcError error_of(const Refusal& refusal) {
  RpcError error = {tag_of(refusal), refusal.sentence(), "application", refusal.path,
                    refusal.code_text()};
  if (error.message.empty()) error.message = refusal.text();
  name_element(error, refusal.missing_key.empty() ? refusal.tag : refusal.missing_key, {});
  return error;
}

RpcError error_of(const InputError& error) {
  const InputFault& fault = error.fault();
  RpcError told = {tag_of(fault.kind), fault.reason, "application", fault.path};
  // The sentence alone does not say which file it is about.
  if (fault.kind == InputFault::Kind::kNotSaved) told.message = error.what();
  if (told.tag == tags::kUnknownAttribute || told.tag == tags::kBadAttribute) {
    name_attribute(told, fault.tag, fault.element);
  } else {
    name_element(told, fault.tag, fault.name_space);
  }
  return told;
}

std::string print(const std::vector<RpcError>& errors, const PathPrinter& print_path) {
  std::string text;
  for (const RpcError& error : errors) text += print(error, print_path);
  return text;
}

}  // namespace ocifip::agent
