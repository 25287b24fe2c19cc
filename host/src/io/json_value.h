// How RFC 7951 writes a leaf's value.
#ifndef OCIFIP_HOST_IO_JSON_VALUE_H_
#define OCIFIP_HOST_IO_JSON_VALUE_H_

#include "io/document.h"

namespace ocifip {

enum class JsonForm {
  kString,
  kBare,  // a number, true or false
  kEmpty  // [null]
};

// The form of a value that is there. One that the node's type would not accept is a string.
JsonForm json_form(const DocumentNode& leaf);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_JSON_VALUE_H_
