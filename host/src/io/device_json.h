// The JSON of a device file, before anything in it has a meaning.
#ifndef OCIFIP_HOST_IO_DEVICE_JSON_H_
#define OCIFIP_HOST_IO_DEVICE_JSON_H_

#include <nlohmann/json.hpp>
#include <string>

#include "ocifip/host.h"

namespace ocifip {

struct DeviceJson {
  // Reads a text that has been checked (check_text). Throws InputError for text that is not JSON,
  // for a name that is twice in one object, and for deep nesting.
  DeviceJson(const std::string& name, const std::string& text);
  DeviceJson(const DeviceJson&) = delete;
  DeviceJson& operator=(const DeviceJson&) = delete;

  // Everything but the members of "native".
  nlohmann::ordered_json fields;
  // The object "native" as it is written, behind as many line feeds as bring it to its line in the
  // file; empty when there is none. Its size and its odd members are for the reader of documents.
  std::string native;
};

// The text of a device file with another object for "native", which is given as JSON. All else is
// as it was, byte by byte; a file without the field has it at its end. Throws as DeviceJson does,
// and InputError for a file that is not an object, or whose "native" is none.
std::string with_native(const std::string& name, const std::string& text,
                        const std::string& native);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_DEVICE_JSON_H_
