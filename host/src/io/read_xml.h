// Reading XML documents (NETCONF).
#ifndef OCIFIP_HOST_IO_READ_XML_H_
#define OCIFIP_HOST_IO_READ_XML_H_

#include <string>
#include <string_view>

#include "io/document.h"
#include "io/models.h"

namespace ocifip {

// Reads a text that has been checked (check_text): data nodes, on their own or in a NETCONF
// "config" or "data" element. Throws InputError.
Document read_xml(const Models& models, const std::string& name, std::string_view text);

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_READ_XML_H_
