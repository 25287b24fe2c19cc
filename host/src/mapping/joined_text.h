// Replies that are printed part by part.
#ifndef OCIFIP_HOST_MAPPING_JOINED_TEXT_H_
#define OCIFIP_HOST_MAPPING_JOINED_TEXT_H_

#include <string>
#include <vector>

#include "io/document.h"
#include "ocifip/host.h"

namespace ocifip {

// The text of a document whose only top-level node is a container of entries of one list, of
// documents that have some of the entries each: that of print_document() for all of them.
class JoinedText {
 public:
  // `format` is not kCalls.
  explicit JoinedText(Format format) : format_(format) {}

  // Adds the entries of a document, of which none lacks a key, or nothing of an empty one. Remarks
  // on what is printed are added to notes.
  void add(const Document& part, std::vector<std::string>& notes);

  std::string finish();

 private:
  Format format_;
  std::string text_;
  std::string end_;  // the lines behind the entries
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_JOINED_TEXT_H_
