// The records of the ARP daemon: static entries.
#ifndef RECORDS_RECORDS_ARP_GMP_EDM_H_
#define RECORDS_RECORDS_ARP_GMP_EDM_H_

#include <cstddef>

#include "record_exports.h"
#include "record_members.h"

// clang-format off

#define ARP_GMP_CONFIG_ENTRY_FIELDS(FIELD)            \
  FIELD(IPV4, IPAddress)                              \
  FIELD(MAC, HardwareAddress)                         \
  FIELD(ENUM, EncapsulationType, arp_gmp_bag_encap)   \
  FIELD(ENUM, EntryType, arp_gmp_bag_entry_type)      \
  FIELD(TEXT, InterfaceName)

struct arp_gmp_config_entry { ARP_GMP_CONFIG_ENTRY_FIELDS(RECORD_MEMBER) };

// clang-format on

// Members have to stand where the platform puts them.
static_assert(offsetof(arp_gmp_config_entry, InterfaceName) == 24);

#endif  // RECORDS_RECORDS_ARP_GMP_EDM_H_
