#include "operations.h"

#include <algorithm>
#include <array>

#include "names.h"

namespace ocifip::agent {
namespace {

constexpr std::array kOperations = {
    OperationRow{kBase, "get", get},
    OperationRow{kBase, "get-config", get_config},
    OperationRow{kBase, "edit-config", edit_config, true},
    OperationRow{kBase, "copy-config", copy_config, true},
    OperationRow{kBase, "validate", validate},
    OperationRow{kBase, "lock", lock, true},
    OperationRow{kBase, "unlock", unlock, true},
    OperationRow{kBase, "commit", commit, true},
    OperationRow{kBase, "cancel-commit", cancel_commit, true},
    OperationRow{kBase, "discard-changes", discard_changes, true},
    OperationRow{kBase, "close-session", close_session},
    OperationRow{kBase, "kill-session", kill_session, true},
    OperationRow{kMonitoring, "get-schema", get_schema},
    OperationRow{kNotification, "create-subscription", create_subscription},
    OperationRow{kPreview, "preview", preview},
};

}  // namespace

const OperationRow* find_operation(std::string_view name_space, std::string_view name) {
  const auto found = std::find_if(
      kOperations.begin(), kOperations.end(),
      [&](const OperationRow& row) { return row.name_space == name_space && row.name == name; });
  return found == kOperations.end() ? nullptr : &*found;
}

}  // namespace ocifip::agent
