// The native operational records: the structures that decoded records are read through, their
// descriptors, and what else the library exports for them.
#ifndef RECORDS_NATIVE_RECORDS_H_
#define RECORDS_NATIVE_RECORDS_H_

#include "record_exports.h"
#include "records_arp_gmp_edm.h"
#include "records_ipv4_ma_oper_interface.h"
#include "records_vrrp.h"

#endif  // RECORDS_NATIVE_RECORDS_H_
