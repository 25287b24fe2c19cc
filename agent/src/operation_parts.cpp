#include "operation_parts.h"

#include "ocifip/messages.h"

namespace ocifip::agent {

Datastore datastore_in(const xmlNode* parameter) {
  const auto given = elements(parameter);
  if (given.size() != 1) {
    throw OperationError(
        element_error(given.empty() ? tags::kMissingElement : tags::kBadElement, name_of(parameter),
                      in_quotes(name_of(parameter)) + " names one datastore, and here it names " +
                          (given.empty() ? "none" : std::to_string(given.size()))));
  }
  Parameters within(parameter);
  for (const Datastore each : {Datastore::kRunning, Datastore::kCandidate}) {
    if (within.flag(name_of(each))) return each;
  }
  throw OperationError(
      element_error(tags::kBadElement, name_of(given.front()),
                    in_quotes(name_of(given.front())) +
                        " is no datastore here: \"running\" and \"candidate\" are"));
}

FilterType type_of(const xmlNode* filter) {
  const std::string type = attribute(filter, "type").value_or("subtree");
  if (type == "subtree") return FilterType::kSubtree;
  if (type == "xpath") return FilterType::kXPath;
  throw OperationError(
      attribute_error(tags::kBadAttribute, "type", "filter",
                      in_quotes(type) + " is no type of filters: \"subtree\" and \"xpath\" are"));
}

}  // namespace ocifip::agent
