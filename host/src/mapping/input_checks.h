// What the host itself asks of a document before the mapping sees it.
#ifndef OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_
#define OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_

#include <string>
#include <vector>

#include "io/check_input.h"
#include "io/document.h"
#include "io/models.h"
#include "mapping/only_ip.h"
#include "mapping/read_back.h"
#include "ocifip/host.h"

namespace ocifip {

// How a user wants requests to be looked at.
struct InputRules {
  explicit InputRules(const HostOptions& options)
      : unchecked(options.unchecked), only_ip(options.only_ip) {}

  bool unchecked;
  bool only_ip;
};

// The checks of one request, which may come in several documents. All throw InputError for a
// top-level node that no mapping takes, and for names of interfaces and indexes of subinterfaces
// that the mapping contract has no room for; and, unless the rules are to check nothing, for what
// the models do not accept.
class InputChecks {
 public:
  // The models outlive the checks.
  InputChecks(const Models& models, InputRules rules) : models_(models), rules_(rules) {}

  void check_edit(Document& document);
  // Throws for a node that carries an operation, too.
  void check_query(Document& document);

  // Remarks on what was passed over and on what has no meaning in an edit.
  [[nodiscard]] std::vector<std::string> notes() const;

 private:
  const Models& models_;
  InputRules rules_;
  PassedOver passed_over_;
  StateNodes state_;
};

// Throws InputError for a node of a query that carries an operation.
void check_no_operations(const Document& document);

// Throws InputError as the checks do for native data, of which the plug-in takes some; there, an
// interface needs its name.
void check_native_data(const Models& models, Document& document, const ReadBackEntries& entries,
                       InputRules rules);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_INPUT_CHECKS_H_
