#include "io/read_document.h"

#include "io/plain_json.h"
#include "io/read_json.h"
#include "io/read_xml.h"
#include "io/text.h"

namespace ocifip {

Document read_document(const Models& models, const Source& source, DocumentUse use) {
  const std::string name = in_short(source.name);
  check_text(name, source.text);
  return source.encoding == Encoding::kXml ? read_xml(models, name, source.text, use)
                                           : read_json(models, name, source.text);
}

Document read_checked(const Models& models, const Source& source,
                      const std::function<void(Document& document)>& check) {
  if (source.encoding == Encoding::kJson) {
    try {
      Document document = read_plain_json(models, in_short(source.name), source.text);
      check(document);
      return document;
    } catch (const NotPlain&) {
    } catch (const InputError&) {
    }
  }
  Document document = read_document(models, source);
  check(document);
  return document;
}

}  // namespace ocifip
