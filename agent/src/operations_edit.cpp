#include <map>
#include <utility>

#include "operation_parts.h"

namespace ocifip::agent {
namespace {

// What is in a <config>, of whatever namespace that is.
EditRequest edit_of(const xmlNode* config, std::optional<DefaultOperation> operation) {
  if (config->properties != nullptr) {
    throw OperationError(attribute_error(tags::kUnknownAttribute,
                                         attribute_name(config->properties), "config",
                                         "\"config\" has no attributes"));
  }
  return {Source{"config", print_content(config, "config", Blanks::kKept), Encoding::kXml},
          {},
          operation};
}

std::optional<DefaultOperation> default_operation(Parameters& parameters) {
  static const std::map<std::string, DefaultOperation> kOperations = {
      {"merge", DefaultOperation::kMerge},
      {"replace", DefaultOperation::kReplace},
      {"none", DefaultOperation::kNone}};
  const auto word = parameters.choice("default-operation", {"merge", "replace", "none"});
  return word ? std::optional(kOperations.at(*word)) : std::nullopt;
}

// What becomes of a configuration, or why nothing does.
Change change(Call& call, const Configuration& base, const EditRequest& request) {
  Change change = call.service.host.change(base, request);
  call.notes.insert(call.notes.end(), change.notes.begin(), change.notes.end());
  if (change.refusals.empty()) return change;
  std::vector<RpcError> errors;
  for (const Refusal& refusal : change.refusals) errors.push_back(error_of(refusal));
  throw OperationError(std::move(errors));
}

// The configuration that a <source> names or gives, which is not that of a target.
Configuration source(Call& call, Parameters& parameters, std::optional<Datastore> target) {
  const xmlNode* given = parameters.need("source");
  Parameters within(given);
  if (const xmlNode* config = within.find("config")) {
    within.finish();
    const Configuration empty = call.service.host.empty();
    return *change(call, empty, edit_of(config, std::nullopt)).result;
  }
  const Datastore named = datastore_in(given);
  if (named == target) {
    throw OperationError(element_error(tags::kInvalidValue, "source",
                                       "\"source\" and \"target\" are the same configuration"));
  }
  return call.service.datastores.content(named);
}

}  // namespace

// All or nothing, whatever the error option is; and tested first, unless that is all that is
// wanted.
Reply edit_config(Call& call) {
  Parameters parameters(call.element);
  const Datastore target = datastore_in(parameters.need("target"));
  const auto operation = default_operation(parameters);
  const auto test = parameters.choice("test-option", {"test-then-set", "set", "test-only"});
  parameters.choice("error-option", {"stop-on-error", "continue-on-error", "rollback-on-error"});
  const xmlNode* config = parameters.need("config");
  parameters.finish();
  call.target = name_of(target);
  Datastores& datastores = call.service.datastores;
  datastores.check_free(target, call.client.id);
  const Change made = change(call, datastores.content(target), edit_of(config, operation));
  if (test != "test-only") datastores.replace(target, *made.result, call.client.id);
  return kDone;
}

Reply copy_config(Call& call) {
  Parameters parameters(call.element);
  const Datastore target = datastore_in(parameters.need("target"));
  call.target = name_of(target);
  Datastores& datastores = call.service.datastores;
  datastores.check_free(target, call.client.id);
  const Configuration content = source(call, parameters, target);
  parameters.finish();
  datastores.replace(target, content, call.client.id);
  return kDone;
}

Reply validate(Call& call) {
  Parameters parameters(call.element);
  const Configuration content = source(call, parameters, std::nullopt);
  parameters.finish();
  const auto refusal = call.service.host.validate(content);
  if (refusal) throw OperationError(error_of(*refusal));
  return kDone;
}

Reply preview(Call& call) {
  Parameters parameters(call.element);
  const Datastore target = datastore_in(parameters.need("target"));
  const auto operation = default_operation(parameters);
  const xmlNode* config = parameters.need("config");
  parameters.finish();
  call.target = name_of(target);
  const Change made =
      change(call, call.service.datastores.content(target), edit_of(config, operation));
  const std::string name_space = " xmlns=\"" + std::string(kPreview) + "\">";
  Elements reply = "<native-edit" + name_space + made.native_edit + "</native-edit><difference" +
                   name_space + made.difference + "</difference>";
  for (const std::string& note : made.notes) {
    reply += "<note" + name_space + escaped(note) + "</note>";
  }
  return reply;
}

}  // namespace ocifip::agent
