// Decoding of records into the structures that their schemas describe.
#ifndef OCIFIP_HOST_RECORDS_DECODER_H_
#define OCIFIP_HOST_RECORDS_DECODER_H_

#include <cstddef>
#include <span>

#include "bag/bag.h"
#include "records/schema.h"

namespace ocifip {

// The schema of a descriptor, the one with names if there is one. Throws RecordError when there is
// none, when it is malformed, and when its structure has not the descriptor's size.
Schema schema_of(const bag_descriptor& descriptor);

// Decodes a record into a structure of the descriptor's size. Throws RecordError, and leaves a
// structure of zeros then.
void decode_record(std::span<const std::byte> record, void* structure,
                   const bag_descriptor& descriptor);

}  // namespace ocifip

#endif  // OCIFIP_HOST_RECORDS_DECODER_H_
