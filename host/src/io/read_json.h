// Reading JSON documents (RFC 7951, with the metadata of RFC 7952).
#ifndef OCIFIP_HOST_IO_READ_JSON_H_
#define OCIFIP_HOST_IO_READ_JSON_H_

#include <memory>
#include <string>
#include <string_view>

#include "io/body_place.h"
#include "io/document.h"
#include "io/json_source.h"
#include "io/models.h"

namespace ocifip {

// What becomes of annotations that are no operations.
enum class OtherAnnotations { kPassedOver, kRefused };

// Becomes a document by the events of its text.
class DocumentEvents : public JsonEvents {
 public:
  // The document, after the last event. Like events, throws InputError.
  virtual Document finish() = 0;
  // What the elements are of the array that was begun last; null when no model knows it.
  [[nodiscard]] virtual const lysc_node* elements() const = 0;
};

// A document within a text that the source reads; the models and the source outlive it.
std::unique_ptr<DocumentEvents> json_document(const Models& models, const std::string& name,
                                              JsonSource& source, OtherAnnotations annotations);

// Reads a text that has been checked (check_text): a document or, with a place, what belongs there.
// Throws InputError.
Document read_json(const Models& models, const std::string& name, std::string_view text,
                   OtherAnnotations annotations = OtherAnnotations::kPassedOver,
                   const BodyPlace* place = nullptr);

// The same of a text without faults, in less time: its nodes have no lines. Throws NotPlain or
// InputError, which names no line, for text that has to be read with its lines.
Document read_plain_json(const Models& models, const std::string& name, const std::string& text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_READ_JSON_H_
