#include "io/netconf_envelope.h"

#include <algorithm>
#include <array>

namespace ocifip {
namespace {

using Role = EnvelopePart::Role;

constexpr std::array kParts = {
    EnvelopePart{"rpc", "", Role::kEnvelope, Envelope::kNone, false, "request"},
    EnvelopePart{"edit-config", "", Role::kEnvelope, Envelope::kEdit},
    EnvelopePart{"edit-config", "rpc", Role::kEnvelope, Envelope::kEdit},
    EnvelopePart{"target", "edit-config", Role::kEnvelope, Envelope::kNone, true, "datastore"},
    EnvelopePart{"default-operation", "edit-config", Role::kParameter, Envelope::kNone},
    EnvelopePart{"test-option", "edit-config", Role::kParameter, Envelope::kNone},
    EnvelopePart{"error-option", "edit-config", Role::kParameter, Envelope::kNone},
    EnvelopePart{"config", "edit-config", Role::kHolder, Envelope::kEdit, true},
    EnvelopePart{"config", "", Role::kHolder, Envelope::kNone},
    EnvelopePart{"running", "target", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"candidate", "target", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"startup", "target", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"get", "", Role::kEnvelope, Envelope::kReadAll},
    EnvelopePart{"get", "rpc", Role::kEnvelope, Envelope::kReadAll},
    EnvelopePart{"filter", "get", Role::kHolder, Envelope::kRead},
    EnvelopePart{"get-config", "", Role::kEnvelope, Envelope::kReadAllConfig},
    EnvelopePart{"get-config", "rpc", Role::kEnvelope, Envelope::kReadAllConfig},
    EnvelopePart{"source", "get-config", Role::kEnvelope, Envelope::kNone, true, "datastore"},
    EnvelopePart{"running", "source", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"candidate", "source", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"startup", "source", Role::kEnvelope, Envelope::kNone},
    EnvelopePart{"filter", "get-config", Role::kHolder, Envelope::kReadConfig},
    EnvelopePart{"filter", "", Role::kHolder, Envelope::kRead},
    EnvelopePart{"rpc-reply", "", Role::kEnvelope, Envelope::kReply},
    EnvelopePart{"data", "rpc-reply", Role::kHolder, Envelope::kReply, true},
    EnvelopePart{"data", "", Role::kHolder, Envelope::kNone},
};

}  // namespace

const EnvelopePart* find_part(std::string_view tag, std::string_view parent) {
  const auto* const found = std::find_if(kParts.begin(), kParts.end(), [&](const auto& part) {
    return part.tag == tag && part.parent == parent;
  });
  return found == kParts.end() ? nullptr : found;
}

std::string_view missing_part(const EnvelopePart& element,
                              const std::vector<const EnvelopePart*>& parts) {
  const auto* const missing = std::find_if(kParts.begin(), kParts.end(), [&](const auto& part) {
    return part.parent == element.tag && part.is_required &&
           std::find(parts.begin(), parts.end(), &part) == parts.end();
  });
  return missing == kParts.end() ? std::string_view() : missing->tag;
}

}  // namespace ocifip
