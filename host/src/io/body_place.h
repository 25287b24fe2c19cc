// Where the body of an instance path belongs.
#ifndef OCIFIP_HOST_IO_BODY_PLACE_H_
#define OCIFIP_HOST_IO_BODY_PLACE_H_

#include <string>
#include <vector>

#include "io/document.h"
#include "io/models.h"
#include "io/tree_builder.h"

namespace ocifip {

// The nodes that a path leads through, entries with their keys, and the one that it names, whose
// content the body is.
struct BodyPlace {
  std::vector<DocumentNode> way;
  DocumentNode target;  // an entry without its keys, which the body may repeat
  std::vector<DocumentNode> keys;

  // Opens the nodes that a path leads through; the target is the reader's to open.
  void open_way(TreeBuilder& builder) const;
};

// Throws InputError for a path that is wrong, that names the key of an entry or a value of a
// leaf-list, or that leads through all entries of a list.
BodyPlace body_place(const Models& models, const std::string& path);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_BODY_PLACE_H_
