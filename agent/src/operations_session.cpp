#include <utility>

#include "ocifip/messages.h"
#include "operation_parts.h"

namespace ocifip::agent {
namespace {

// Each event is compared with each filter.
constexpr std::size_t kLongestFilter = 65536;

Datastore only_target(Call& call) {
  Parameters parameters(call.element);
  const Datastore target = datastore_in(parameters.need("target"));
  parameters.finish();
  call.target = name_of(target);
  return target;
}

}  // namespace

Reply lock(Call& call) {
  call.service.datastores.lock(only_target(call), call.client.id);
  return kDone;
}

Reply unlock(Call& call) {
  call.service.datastores.unlock(only_target(call), call.client.id);
  return kDone;
}

Reply commit(Call& call) {
  Parameters parameters(call.element);
  CommitTerms terms;
  terms.is_confirmed = parameters.flag("confirmed");
  const auto timeout = parameters.number("confirm-timeout");
  terms.persist = parameters.text("persist");
  terms.persist_id = parameters.text("persist-id");
  parameters.finish();
  if (timeout) terms.timeout = std::chrono::seconds(*timeout);
  if (!terms.is_confirmed && (timeout || terms.persist)) {
    throw OperationError(element_error(tags::kMissingElement, "confirmed",
                                       "\"confirm-timeout\" and \"persist\" are for a commit that "
                                       "is \"confirmed\""));
  }
  call.service.datastores.commit(call.client.id, terms);
  return kDone;
}

Reply cancel_commit(Call& call) {
  Parameters parameters(call.element);
  const auto persist_id = parameters.text("persist-id");
  parameters.finish();
  call.service.datastores.cancel(call.client.id, persist_id);
  return kDone;
}

Reply discard_changes(Call& call) {
  Parameters(call.element).finish();
  call.service.datastores.discard(call.client.id);
  return kDone;
}

// The session ends behind the reply.
Reply close_session(Call& call) {
  Parameters(call.element).finish();
  call.client.ending = Ending::kClosed;
  return kDone;
}

Reply kill_session(Call& call) {
  Parameters parameters(call.element);
  const auto id = parameters.number("session-id");
  if (!id) parameters.need("session-id");
  parameters.finish();
  call.target = std::to_string(*id);
  const auto victim = call.service.clients.find(*id);
  const bool is_gone = victim == call.service.clients.end() || victim->second.killed_by != 0;
  if (*id == call.client.id || is_gone) {
    throw OperationError(element_error(tags::kInvalidValue, "session-id",
                                       *id == call.client.id
                                           ? "a session cannot kill itself"
                                           : "no session " + std::to_string(*id)));
  }
  call.service.datastores.end(*id);
  victim->second.ending = Ending::kKilled;
  victim->second.killed_by = call.client.id;
  victim->second.peer.abort();
  return kDone;
}

Reply create_subscription(Call& call) {
  Parameters parameters(call.element);
  const std::string stream = parameters.text("stream").value_or("NETCONF");
  const xmlNode* filter = parameters.find("filter");
  const auto start = parameters.text("startTime");
  const auto stop = parameters.text("stopTime");
  parameters.finish();
  call.target = stream;
  if (stream != "NETCONF") {
    throw OperationError(element_error(tags::kInvalidValue, "stream",
                                       "no stream " + in_quotes(stream) + ": \"NETCONF\" is one"));
  }
  if (stop && !start) {
    throw OperationError(element_error(tags::kMissingElement, "startTime",
                                       "\"stopTime\" without its \"startTime\""));
  }
  if (start) {
    throw OperationError(RpcError{tags::kNotSupported,
                                  "events of the past are not kept: "
                                  "\"startTime\" and \"stopTime\" have no use"});
  }
  if (call.client.subscription) {
    throw OperationError(RpcError{tags::kInUse, "this session has a subscription"});
  }
  Subscription subscription;
  if (filter != nullptr) {
    const std::size_t size = print(filter).size();
    if (size > kLongestFilter) {
      throw OperationError(RpcError{
          tags::kTooBig, "a filter of more than " + std::to_string(kLongestFilter) + " bytes"});
    }
    const bool is_xpath = type_of(filter) == FilterType::kXPath;
    if (is_xpath) xpath_of(filter);
    subscription.document = is_xpath ? copy_of(filter) : without_attributes(filter);
    subscription.filter = top(subscription.document);
  }
  call.client.subscription = std::move(subscription);
  return kDone;
}

}  // namespace ocifip::agent
