// A read of many interfaces as reads of some of them each.
#ifndef OCIFIP_HOST_MAPPING_READ_GROUPS_H_
#define OCIFIP_HOST_MAPPING_READ_GROUPS_H_

#include <cstddef>
#include <string>
#include <unordered_set>
#include <vector>

#include "io/document.h"

namespace ocifip {

// Interfaces that are read together.
struct ReadGroup {
  std::unordered_set<std::string> interfaces;  // OpenConfig's names, "Eth1"
  std::vector<std::string> native_names;       // those of the device: "Eth1", "Eth1.20"
};

// The interfaces that reads name or, without a key, stand for, in the order in which an answer to
// all of them has them; in groups that are closed with `size` subinterfaces. `native_names` are
// those of the device. None when the reads ask for anything but interfaces.
std::vector<ReadGroup> read_groups(const std::vector<Document>& reads,
                                   const std::vector<std::string>& native_names, std::size_t size);

// What reads ask for of a group. Entries without keys stand for all interfaces, as before.
std::vector<Document> reads_of(const ReadGroup& group, const std::vector<Document>& reads);

// Whether a reply has interfaces of a group, and nothing else.
bool is_of_group(const Document& reply, const ReadGroup& group);

}  // namespace ocifip

#endif  // OCIFIP_HOST_MAPPING_READ_GROUPS_H_
