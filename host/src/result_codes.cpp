#include "result_codes.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "im/interface_manager.h"
#include "sysdb/sysdb.h"
#include "yfw/mapping.h"
#include "yfw/text.h"

namespace ocifip {
namespace {

struct Words {
  cerrno code;
  std::string_view name;
  const char* sentence;
};

constexpr std::string_view kPlainName = "error";

constexpr std::array kWords = {
    Words{kOk, "ok", "success"},
    Words{kNotFound, kPlainName, "nothing matches"},
    Words{kNoMemory, "no-memory", "out of memory"},
    Words{YFW_MAP_ERR_PREFIX_LENGTH, "prefix-length", "the prefix length is out of range"},
    Words{kInvalidArgument, "invalid-argument", "a service was called with an invalid argument"},
    Words{kUndecodable, "undecodable", "the address list cannot be decoded"},
    Words{YFW_TEXT_NULL, "text", "a text or its destination is missing"},
    Words{YFW_TEXT_ZERO, "text", "a text's destination has no room"},
    Words{YFW_TEXT_TOO_BIG, "text", "a text's destination exceeds the permissible length"},
    Words{YFW_TEXT_NO_SPACE, "text", "a text does not fit its destination"},
    Words{kUnavailable, "unavailable", "the device does not offer the service"},
    Words{kUnbalanced, "unbalanced", "a node was left that was not the innermost one"},
    Words{kPathMalformed, "path", "the path has no steps"},
    Words{kPathUnwritable, "path", "the path leads through a leaf"},
    Words{kDataMissing, "data-missing", "the node does not exist on the device"},
    Words{kDataExists, "data-exists", "the node exists on the device already"},
    Words{kInvalidData, "invalid-data", "the models do not accept the resulting configuration"},
    Words{kSameNode, "same-node",
          "the OpenConfig part and the native part of the edit both change it"},
    Words{kRecordUnreadable, "record", "the database item is a record that cannot be served"},
    Words{kRecordSchemaMissing, "record", "the record's descriptor has no schema"},
    Words{kRecordSchemaMalformed, "record", "the record's schema is malformed"},
    Words{kRecordSchemaLayout, "record", "the record's schema describes another structure"},
    Words{kRecordMismatch, "record", "the record is of another name or version"},
    Words{kRecordMalformed, "record", "the bytes are not a record"},
    Words{kRecordBatch, "record", "a batch of records is open already, or none is"},
    Words{IMC_INTERFACE_UNKNOWN, "interface-unknown", "the interface does not exist"},
    Words{SYSDB_ITEM_NOT_FOUND, "item-not-found", "the database does not hold the item"},
    Words{SYSDB_LIST_EMPTY, "list-empty", "the database list has no further item"},
    Words{SYSDB_UNAVAILABLE, "database", "the database is not available"},
    Words{YFW_MAP_ERR_NAMELESS_ITEM, "nameless-item", "an item of a database list has no name"},
    Words{kInvalidArguments, "invalid-arguments",
          "a container that is deleted must have no content in the request"},
    Words{YFW_MAP_ERR_NO_SUBTREE, "no-subtree", "the children of a node cannot be read"},
    Words{YFW_MAP_ERR_NO_KEYS, "no-keys",
          "a list entry has no keys, or names an entry that does not exist"},
    Words{kListKey, "list-key", "a list entry is not named by each of its keys"},
    Words{kKeyDelete, "key-delete", "a key cannot be deleted apart from its entry"},
    Words{YFW_MAP_ERR_VALUE_RANGE, "value-range", "the value is out of range"},
    Words{kUnsupported, "unsupported", "the mapping does not support this node"},
    Words{YFW_MAP_ERR_UNSUPPORTED_AUGMENT, "unsupported-augment",
          "the mapping does not support what is added here"},
    Words{YFW_MAP_XPATH_NOT_ADDED, "xpath", "the path does not resolve, or its leaf exists"},
};

const Words* find_words(cerrno code) {
  const auto found =
      std::find_if(kWords.begin(), kWords.end(), [&](const Words& w) { return w.code == code; });
  return found == kWords.end() ? nullptr : &*found;
}

}  // namespace

bool has_words(cerrno code) { return find_words(code) != nullptr; }

std::string_view result_name(cerrno code) {
  const Words* words = find_words(code);
  return words == nullptr ? kPlainName : words->name;
}

std::string hexadecimal(cerrno code) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "0x%x", code);
  return text.data();
}

}  // namespace ocifip

extern "C" const char* cerr_strerror(cerrno code) {
  if (const auto* words = ocifip::find_words(code)) {
    return words->sentence;
  }
  thread_local std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "error 0x%x", code);
  return text.data();
}
