// Errors as NETCONF tells them (RFC 6241, section 4.3).
#ifndef OCIFIP_AGENT_RPC_ERROR_H_
#define OCIFIP_AGENT_RPC_ERROR_H_

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ocifip/host.h"

namespace ocifip::agent {

// The tags that errors have here, of those in appendix A.
namespace tags {
inline constexpr const char* kInUse = "in-use";
inline constexpr const char* kInvalidValue = "invalid-value";
inline constexpr const char* kTooBig = "too-big";
inline constexpr const char* kMissingAttribute = "missing-attribute";
inline constexpr const char* kBadAttribute = "bad-attribute";
inline constexpr const char* kUnknownAttribute = "unknown-attribute";
inline constexpr const char* kMissingElement = "missing-element";
inline constexpr const char* kBadElement = "bad-element";
inline constexpr const char* kUnknownElement = "unknown-element";
inline constexpr const char* kUnknownNamespace = "unknown-namespace";
inline constexpr const char* kAccessDenied = "access-denied";
inline constexpr const char* kLockDenied = "lock-denied";
inline constexpr const char* kResourceDenied = "resource-denied";
inline constexpr const char* kDataExists = "data-exists";
inline constexpr const char* kDataMissing = "data-missing";
inline constexpr const char* kNotSupported = "operation-not-supported";
inline constexpr const char* kFailed = "operation-failed";
inline constexpr const char* kMalformed = "malformed-message";
}  // namespace tags

struct RpcError {
  std::string tag;
  std::string message;
  std::string type = "protocol";  // the layer: transport, rpc, protocol or application
  std::string path{};             // of the node that is wrong, as the host has it; "" for none
  std::string app_tag{};
  std::string info{};  // XML
};

// What an operation ends with when it cannot be done; nothing has been done then.
class OperationError : public std::exception {
 public:
  explicit OperationError(RpcError error) { errors.push_back(std::move(error)); }
  explicit OperationError(std::vector<RpcError> all) : errors(std::move(all)) {}

  [[nodiscard]] const char* what() const noexcept override {
    return errors.front().message.c_str();
  }

  std::vector<RpcError> errors;  // one at least
};

// With the element that an error is about in error-info, as the standard wants it, and with its
// namespace where that is unknown.
RpcError element_error(const char* tag, std::string_view element, std::string message,
                       std::string_view name_space = {});

// The same of an attribute.
RpcError attribute_error(const char* tag, std::string_view attribute, std::string_view of,
                         std::string message);

// Why the mapping or the device refused an edit or a read.
RpcError error_of(const Refusal& refusal);
// What is wrong with what a client sent.
RpcError error_of(const InputError& error);

// Prints an element with a path of the host's, whose prefixes mean something there; "" for a path
// to nothing that is known.
using PathPrinter = std::function<std::string(std::string_view element, const std::string& path)>;

// <rpc-error>s, one behind the other; without a printer, without their paths.
std::string print(const std::vector<RpcError>& errors, const PathPrinter& print_path = {});

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_RPC_ERROR_H_
