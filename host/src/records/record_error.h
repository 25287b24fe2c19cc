// Failures of the record codec.
#ifndef OCIFIP_HOST_RECORDS_RECORD_ERROR_H_
#define OCIFIP_HOST_RECORDS_RECORD_ERROR_H_

#include <stdexcept>
#include <string>

#include "result_codes.h"

namespace ocifip {

inline constexpr cerrno kRecordSchemaMissing = 0x40800c00;    // the descriptor has no schema
inline constexpr cerrno kRecordSchemaMalformed = 0x40800e00;  // its schema is not in the language
inline constexpr cerrno kRecordSchemaLayout = 0x40801000;     // its schema has another size
inline constexpr cerrno kRecordMismatch = 0x40801200;         // a record of another name or version
inline constexpr cerrno kRecordMalformed = 0x40801400;        // bytes that are not a record
inline constexpr cerrno kRecordBatch = 0x40801600;            // no batch is open, or one is already

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
