#include "io/read_document.h"

#include "io/read_json.h"
#include "io/read_xml.h"
#include "io/text.h"

namespace ocifip {

Document read_document(const Models& models, const Source& source) {
  const std::string name = in_short(source.name);
  check_text(name, source.text);
  return source.encoding == Encoding::kXml ? read_xml(models, name, source.text)
                                           : read_json(models, name, source.text);
}

}  // namespace ocifip
