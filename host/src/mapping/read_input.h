// Reading queries.
#ifndef OCIFIP_HOST_MAPPING_READ_INPUT_H_
#define OCIFIP_HOST_MAPPING_READ_INPUT_H_

#include <string>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "mapping/input_checks.h"
#include "mapping/native_input.h"
#include "ocifip/host.h"

namespace ocifip {

// What is asked for of one kind of models. Each document may be asked by itself: together, one that
// names a leaf would narrow one that names the container around it.
struct ReadParts {
  // No value of a leaf that is no key chooses anything: of what values choose in, this is all that
  // the choice is made of.
  std::vector<Document> asked;
  std::vector<Document> chosen;  // with values that choose; empty when they do not
};

// A read as a client sent it, checked.
struct ReadInput {
  ReadParts openconfig;
  ReadParts native;
  bool is_all_native = false;  // all that there is of the native models
  bool values_choose = false;
  std::vector<std::string> notes;
  Content content = Content::kAll;
};

// Reads the parts of a query. Throws InputError.
ReadInput read_query(const Models& models, const QueryRequest& request, InputRules rules,
                     Views views);

// All that documents ask for.
Document joined(const std::vector<Document>& documents);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_INPUT_H_
