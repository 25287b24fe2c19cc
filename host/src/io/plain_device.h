// The JSON of a device file without faults, of which only what is asked for becomes more than
// parsed text.
#ifndef OCIFIP_HOST_IO_PLAIN_DEVICE_H_
#define OCIFIP_HOST_IO_PLAIN_DEVICE_H_

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "io/models.h"
#include "io/native_configuration.h"
#include "io/plain_json.h"

namespace ocifip {

struct PlainDeviceJson {
  // Without the members of "native" and the elements of "interfaces".
  nlohmann::ordered_json fields;
  std::shared_ptr<const NativeText> native;    // null when there is none
  std::optional<PlainJson::Value> interfaces;  // an array; valid for as long as `text` lives
  std::shared_ptr<const PlainJson> text;
};

// The models outlive the result. Throws NotPlain or InputError for text that has to be read by
// read_device_json(), which says what is wrong if something is.
PlainDeviceJson open_device_json(const Models& models, const std::string& name,
                                 const std::shared_ptr<const std::string>& text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_PLAIN_DEVICE_H_
