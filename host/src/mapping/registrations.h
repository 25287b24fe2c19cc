// The registration records of the plug-in: which native tree it maps, and by which callbacks.
#ifndef OCIFIP_HOST_MAPPING_REGISTRATIONS_H_
#define OCIFIP_HOST_MAPPING_REGISTRATIONS_H_

#include <string>
#include <vector>

#include "ocifip/host.h"
#include "yfw/registration.h"

namespace ocifip {

struct RegistrationRecord {
  const char* function;  // the plug-in's function that filled it
  yfw_map_reg_record record;
};

// Has a loaded library fill a record by each registration function that it exports. A function that
// it lacks is a native model that it does not map. Throws LoadError, which names the library's
// file, for a library without any, and for a record that does not pair a native tree with
// OpenConfig's interfaces.
std::vector<RegistrationRecord> load_registrations(void* library, const std::string& file);

// The callback that an OpenConfig request is entered by: the sibling's walker of interfaces, which
// a record pairs with its native tree. Records with another callback map a part of OpenConfig's
// tree that is entered by itself. Throws LoadError, which names the library's file, when no record
// has the sibling's.
yfw_map_leaf_callback openconfig_entry(const std::vector<RegistrationRecord>& records,
                                       const std::string& file);

// The records as users see them, for Host::registrations, with the plug-in's version.
std::string print_registrations(const std::string& version,
                                const std::vector<RegistrationRecord>& records, Format format);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_REGISTRATIONS_H_
