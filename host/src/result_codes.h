// Results that the host's services return, beside those that the contract headers name, and the
// words for every result that a mapping may return.
#ifndef OCIFIP_HOST_RESULT_CODES_H_
#define OCIFIP_HOST_RESULT_CODES_H_

#include <string>
#include <string_view>

#include "yfw/cerrno.h"
#include "yfw/mapping_results.h"

namespace ocifip {

inline constexpr cerrno kOk = 0;

// Failures of the services.
inline constexpr cerrno kNotFound = 2;
inline constexpr cerrno kNoMemory = YFW_MAP_ERR_NO_MEMORY;
inline constexpr cerrno kInvalidArgument = 22;  // a mapping's YFW_MAP_ERR_NO_RECORD, too
inline constexpr cerrno kUndecodable = YFW_MAP_ERR_ADDRESS_LIST;
inline constexpr cerrno kUnavailable = 0x40800200;     // a service that the device lacks
inline constexpr cerrno kUnbalanced = 0x40800400;      // a pop without its push
inline constexpr cerrno kPathMalformed = 0x40800600;   // a path that has no steps
inline constexpr cerrno kPathUnwritable = 0x40800800;  // a path that leads through a leaf
inline constexpr cerrno kRecordUnreadable = 0x40800a00;

// Failures of the codec of records.
inline constexpr cerrno kRecordSchemaMissing = 0x40800c00;    // the descriptor has no schema
inline constexpr cerrno kRecordSchemaMalformed = 0x40800e00;  // its schema is not in the language
inline constexpr cerrno kRecordSchemaLayout = 0x40801000;     // its schema has another size
inline constexpr cerrno kRecordMismatch = 0x40801200;         // a record of another name or version
inline constexpr cerrno kRecordMalformed = 0x40801400;        // bytes that are not a record
inline constexpr cerrno kRecordBatch = 0x40801600;            // no batch is open, or one is already

// Reasons for which the device does not take a native edit.
inline constexpr cerrno kDataMissing = 0x40802000;  // a node that must be there is not
inline constexpr cerrno kInvalidData = 0x40802200;  // what would come of it
inline constexpr cerrno kDataExists = 0x40802400;   // a node that is created is there already
inline constexpr cerrno kSameNode = 0x40802600;     // a node that both views of one edit name

// Results of mappings, as far as the host returns or tells them apart itself.
inline constexpr cerrno kInvalidArguments = YFW_MAP_ERR_INVALID_ARGS;
inline constexpr cerrno kUnsupported = YFW_MAP_ERR_UNSUPPORTED;
inline constexpr cerrno kListKey = YFW_MAP_ERR_LIST_KEY;
inline constexpr cerrno kKeyDelete = YFW_MAP_ERR_KEY_DELETE;

// Whether cerr_strerror has a sentence for a result, and not its number alone.
bool has_words(cerrno code);

// One word for a result, as "unsupported"; "error" for a result without a word of its own.
std::string_view result_name(cerrno code);

// A result as users read it: "0xaaf2ee00".
std::string hexadecimal(cerrno code);

}  // namespace ocifip

#endif  // OCIFIP_HOST_RESULT_CODES_H_
