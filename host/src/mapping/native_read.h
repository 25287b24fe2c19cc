// A read of native models, a while at a time.
#ifndef OCIFIP_HOST_MAPPING_NATIVE_READ_H_
#define OCIFIP_HOST_MAPPING_NATIVE_READ_H_

#include "io/document.h"
#include "io/models.h"
#include "io/native_configuration.h"
#include "io/select_data.h"
#include "io/xml_printer.h"
#include "mapping/read_input.h"
#include "ocifip/host.h"

namespace ocifip {

class NativeRead {
 public:
  // All but the read outlive it.
  NativeRead(const Models& models, const NativeConfiguration& native, const ReadInput& read);

  // Goes on for some milliseconds. Whether there is more to do.
  bool step();
  // When there is nothing more to do: XML elements, as print_elements() has them.
  Outcome finish();

 private:
  Document query_;
  SelectionInSteps selection_;
  Outcome outcome_;
  XmlPrinter printer_{outcome_.notes};
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_NATIVE_READ_H_
