// Reading edits.
#ifndef OCIFIP_HOST_MAPPING_EDIT_INPUT_H_
#define OCIFIP_HOST_MAPPING_EDIT_INPUT_H_

#include <string>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "mapping/input_checks.h"
#include "mapping/native_input.h"
#include "ocifip/host.h"

namespace ocifip {

// An edit as a client sent it, checked.
struct EditInput {
  Document openconfig;
  Document native;  // its nodes say the operations that they inherit
  DefaultOperation operation = DefaultOperation::kMerge;
  std::vector<std::string> notes;
};

// Reads the parts of an edit, and joins them. Throws InputError.
EditInput read_edit(const Models& models, const EditRequest& request, InputRules rules,
                    Views views);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_EDIT_INPUT_H_
