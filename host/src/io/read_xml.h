// Reading XML documents (NETCONF).
#ifndef OCIFIP_HOST_IO_READ_XML_H_
#define OCIFIP_HOST_IO_READ_XML_H_

#include <string>
#include <string_view>

#include "io/body_place.h"
#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// Reads a text that has been checked (check_text): data nodes, on their own or in what NETCONF puts
// around them ("config", "filter", "data", or a whole request or reply). Throws InputError.
Document read_xml(const Models& models, const std::string& name, std::string_view text,
                  DocumentUse use);

// Reads elements that belong at a place.
Document read_xml(const Models& models, const std::string& name, std::string_view text,
                  const BodyPlace& place);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_READ_XML_H_
