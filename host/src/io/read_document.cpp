#include "io/read_document.h"

#include "io/read_json.h"
#include "io/read_xml.h"
#include "io/text.h"

namespace ocifip {

Document read_document(const Models& models, const Source& source) {
  check_text(source.name, source.text);
  return source.encoding == Encoding::kXml ? read_xml(models, source.name, source.text)
                                           : read_json(models, source.name, source.text);
}

}  // namespace ocifip
