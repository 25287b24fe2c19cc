// Failures of the record codec.
#ifndef OCIFIP_HOST_RECORDS_RECORD_ERROR_H_
#define OCIFIP_HOST_RECORDS_RECORD_ERROR_H_

#include <stdexcept>
#include <string>

#include "result_codes.h"

namespace ocifip {

// A failure inside the codec: the result that its C functions return, and the reason in words.
class RecordError : public std::runtime_error {
 public:
  RecordError(cerrno code, const std::string& reason) : std::runtime_error(reason), code_(code) {}
  [[nodiscard]] cerrno code() const { return code_; }

 private:
  cerrno code_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_RECORD_ERROR_H_
