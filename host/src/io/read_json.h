// Reading JSON documents (RFC 7951, with the metadata of RFC 7952).
#ifndef OCIFIP_HOST_IO_READ_JSON_H_
#define OCIFIP_HOST_IO_READ_JSON_H_

#include <string>
#include <string_view>

#include "io/body_place.h"
#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// What becomes of annotations that are no operations.
enum class OtherAnnotations { kPassedOver, kRefused };

// Reads a text that has been checked (check_text): a document or, with a place, what belongs there.
// Throws InputError.
Document read_json(const Models& models, const std::string& name, std::string_view text,
                   OtherAnnotations annotations = OtherAnnotations::kPassedOver,
                   const BodyPlace* place = nullptr);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_READ_JSON_H_
