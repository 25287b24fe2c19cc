// The JSON of a device file, before anything in it but its native configuration has a meaning.
#ifndef OCIFIP_HOST_IO_DEVICE_JSON_H_
#define OCIFIP_HOST_IO_DEVICE_JSON_H_

#include <nlohmann/json.hpp>
#include <string>

#include "io/document.h"
#include "io/models.h"
#include "ocifip/host.h"

namespace ocifip {

struct DeviceJson {
  nlohmann::ordered_json fields;  // without the members of "native"
  Document native;                // the object "native"; empty when there is none
};

// Reads a text that has been checked (check_text). Throws InputError for text that is not JSON, for
// a name that is twice in one object, for deep nesting, and as the reader of documents does.
DeviceJson read_device_json(const Models& models, const std::string& name, const std::string& text);

// The text of a device file, which has been read, with another object for "native", which is given
// as JSON. All else is as it was, byte by byte; a file without the field has it at its end. Throws
// InputError for a file that is not an object, and for one whose "native" is none.
std::string with_native(const std::string& name, const std::string& text,
                        const std::string& native);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DEVICE_JSON_H_
