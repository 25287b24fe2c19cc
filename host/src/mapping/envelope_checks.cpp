#include "mapping/envelope_checks.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "io/text.h"

namespace ocifip {
namespace {

struct Word {
  DefaultOperation operation;
  std::string_view name;
};

constexpr std::array kWords = {
    Word{DefaultOperation::kMerge, "merge"}, Word{DefaultOperation::kCreate, "create"},
    Word{DefaultOperation::kReplace, "replace"}, Word{DefaultOperation::kNone, "none"}};

std::string name_of(DefaultOperation operation) {
  const auto* const found = std::find_if(
      kWords.begin(), kWords.end(), [&](const Word& word) { return word.operation == operation; });
  return std::string(found->name);
}

DefaultOperation default_operation(Operation operation) {
  switch (operation) {
    case Operation::kReplace:
      return DefaultOperation::kReplace;
    case Operation::kNone:
      return DefaultOperation::kNone;
    default:
      return DefaultOperation::kMerge;
  }
}

std::string_view name_of(Envelope envelope) {
  switch (envelope) {
    case Envelope::kEdit:
      return "an edit";
    case Envelope::kReply:
      return "a reply";
    default:
      return "a read";
  }
}

[[noreturn]] void fail(const Document& document, const std::string& reason) {
  throw input_error(document.name, 0, reason);
}

void refuse(const Document& document, std::string_view expected) {
  fail(document, "a NETCONF message that is " + std::string(name_of(document.envelope)) + ", not " +
                     std::string(expected));
}

}  // namespace

void check_is_edit(const Document& document) {
  const auto envelope = document.envelope;
  if (envelope != Envelope::kNone && envelope != Envelope::kEdit) refuse(document, "an edit");
}

void check_is_data(const Document& document) {
  const auto envelope = document.envelope;
  if (envelope != Envelope::kNone && envelope != Envelope::kReply) refuse(document, "data");
}

DefaultOperation default_operation(const EditRequest& request, const Document& document) {
  if (!document.operation) return request.operation.value_or(DefaultOperation::kMerge);
  const auto asked = default_operation(*document.operation);
  if (request.operation && *request.operation != asked) {
    fail(document, "the default operation of the document is " + name_of(asked) +
                       ", but that of the request is " + name_of(*request.operation));
  }
  return asked;
}

Content content_of(const QueryRequest& request, const Document& document) {
  switch (document.envelope) {
    case Envelope::kReadConfig:
    case Envelope::kReadAllConfig:
      if (request.content == Content::kAll) {
        fail(document, "a NETCONF get-config, which has no state: all content cannot be asked for");
      }
      return Content::kConfig;
    case Envelope::kEdit:
    case Envelope::kReply:
      refuse(document, "a read");
      [[fallthrough]];
    default:
      return request.content.value_or(Content::kAll);
  }
}

bool reads_all(const Document& document) {
  return document.envelope == Envelope::kReadAll || document.envelope == Envelope::kReadAllConfig;
}

}  // namespace ocifip
