// Holding what a client sends against the models.
#ifndef OCIFIP_HOST_IO_CHECK_INPUT_H_
#define OCIFIP_HOST_IO_CHECK_INPUT_H_

#include <cstddef>
#include <string>

#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// What a document is for: in an edit and in data a leaf has a value unless it is deleted; a query
// may name a leaf alone.
enum class InputUse { kEdit, kQuery, kData };

// Nodes of an edit that are not configuration, each counted with all below it as one.
struct StateNodes {
  std::size_t count = 0;
  std::string first;  // its instance path
};

// Throws InputError for the first node that no model has at its place and for the first value that
// the type of its leaf does not take: "NAME:LINE: REASON", with the place and with what was meant,
// if that is near. The document need not be complete, and what a reference leads to need not be
// there. Numbers are put into canonical form.
StateNodes check_against_models(const Models& models, Document& document, InputUse use);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_CHECK_INPUT_H_
