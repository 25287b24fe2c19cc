// The border between the codec and its C functions.
#ifndef OCIFIP_HOST_RECORDS_CODEC_RESULT_H_
#define OCIFIP_HOST_RECORDS_CODEC_RESULT_H_

#include "guarded.h"
#include "records/record_error.h"

namespace ocifip {

// Runs work of the codec, and turns its errors into results.
template <typename Work>
cerrno codec_result(Work&& work) {
  return guarded([&]() -> cerrno {
    try {
      work();
      return kOk;
    } catch (const RecordError& error) {
      return error.code();
    }
  });
}

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_CODEC_RESULT_H_
