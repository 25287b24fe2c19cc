// The records of the IPv4 daemon: an interface's detail, and the summaries kept for OpenConfig.
#ifndef RECORDS_RECORDS_IPV4_MA_OPER_INTERFACE_H_
#define RECORDS_RECORDS_IPV4_MA_OPER_INTERFACE_H_

#include <cstddef>

#include "record_exports.h"
#include "record_members.h"

// clang-format off

#define IPV4_GROUP_FIELDS(FIELD) FIELD(IPV4, GroupAddress)

#define IPV4_IF_ADDRESS_FIELDS(FIELD)                 \
  FIELD(IPV4, Address)                                \
  FIELD(I32, PrefixLength)                            \
  FIELD(I32, RouteTag)                                \
  FIELD(I32, Algorithm)

#define IPV4_IF_ACL_FIELDS(FIELD)                     \
  FIELD(TEXT, Inbound)                                \
  FIELD(TEXT, Outbound)                               \
  FIELD(TEXT, CommonInBound)                          \
  FIELD(TEXT, CommonOutBound)

#define IPV4_IF_ACL_NAME_FIELDS(FIELD) FIELD(TEXT, Name)

#define IPV4_IF_MULTI_ACL_FIELDS(FIELD)               \
  FIELD(FIVE, inbound, ipv4_if_acl_name, 4)           \
  FIELD(FIVE, outbound, ipv4_if_acl_name, 4)          \
  FIELD(FIVE, common, ipv4_if_acl_name, 4)

#define IPV4_IF_HELPERS_FIELDS(FIELD) FIELD(ARRAY_IPV4, AddressArray)

#define IPV4_IF_RPF_FIELDS(FIELD)                     \
  FIELD(BOOL, Enable)                                 \
  FIELD(BOOL, AllowDefaultRoute)                      \
  FIELD(BOOL, AllowSelfPing)                          \
  FIELD(ENUM, Mode, rpf_mode)

#define IPV4_IF_BGP_PA_DIRECTION_FIELDS(FIELD)        \
  FIELD(BOOL, Enable)                                 \
  FIELD(BOOL, Source)                                 \
  FIELD(BOOL, Destination)

#define IPV4_IF_BGP_PA_FIELDS(FIELD)                  \
  FIELD(STRUCT, Input, ipv4_if_bgp_pa_direction, 8)   \
  FIELD(STRUCT, Output, ipv4_if_bgp_pa_direction, 8)

#define IPV4_IF_DETAIL_FIELDS(FIELD)                          \
  FIELD(IPV4, PrimaryAddress)                                 \
  FIELD(I32, VRF_ID)                                          \
  FIELD(I32, TableID)                                         \
  FIELD(TEXT, VRFName)                                        \
  FIELD(ENUM, LineState, ipv4_ma_oper_line_state_type)        \
  FIELD(I32, PrefixLength)                                    \
  FIELD(I32, RouteTag)                                        \
  FIELD(I32, Algorithm)                                       \
  FIELD(ARRAY, MulticastGroups, ipv4_group, 1)                \
  FIELD(I32, MTU)                                             \
  FIELD(BOOL, Unreachable)                                    \
  FIELD(BOOL, Redirect)                                       \
  FIELD(BOOL, DirectBroadcast)                                \
  FIELD(BOOL, MaskReply)                                      \
  FIELD(BOOL, RG_IDExists)                                    \
  FIELD(BOOL, mLACPActive)                                    \
  FIELD(TEXT, UnnumberedInterfaceName)                        \
  FIELD(TEXT, NextUnnumberedInterfaceName)                    \
  FIELD(ARRAY, SecondaryAddress, ipv4_if_address, 2)          \
  FIELD(BOOL, ProxyARPDisabled)                               \
  FIELD(STRUCT, ACL, ipv4_if_acl, 3)                          \
  FIELD(STRUCT, MultiACL, ipv4_if_multi_acl, 5)               \
  FIELD(OPTIONAL, HelperAddress, ipv4_if_helpers, 6)          \
  FIELD(STRUCT, RPF, ipv4_if_rpf, 7)                          \
  FIELD(STRUCT, BGP_PA, ipv4_if_bgp_pa, 9)                    \
  FIELD(BOOL, FLOW_TAG_SRC)                                   \
  FIELD(BOOL, FLOW_TAG_DST)                                   \
  FIELD(I32, ConfigFlags)                                     \
  FIELD(U64, OperFlags)                                       \
  FIELD(I32, ArmFlags)                                        \
  FIELD(ENUM, StateRecvdFrmIM, ipv4_ma_oper_line_state_type)  \
  FIELD(IPV4, CflctAddress)                                   \
  FIELD(ENUM, ClientType, ipv4_ma_oper_config_type)           \
  FIELD(BOOL, IsOrEvent)                                      \
  FIELD(ENUM, OrImState, im_state_type_)                      \
  FIELD(ENUM, OrImStateRcvd, im_state_type_)                  \
  FIELD(ENUM, OrImStateConstraint, im_state_type_)            \
  FIELD(U64, IdbPointer)                                      \
  FIELD(IPV4, SubGWAddress)                                   \
  FIELD(I32, GWPrefixLength)                                  \
  FIELD(BOOL, GWAddressRcvd)

// --- summaries kept for OpenConfig ---------------------------------------------------------------

#define IPV4_MA_OC_EVENT_FIELDS(FIELD)                \
  FIELD(TEXT, evt_timestamp)                          \
  FIELD(U64, evt_timestamp_ms)                        \
  FIELD(TEXT, evt_name)                               \
  FIELD(U8, evt_type)                                 \
  FIELD(BOOL, evt_many)                               \
  FIELD(BOOL, evt_sticky)                             \
  FIELD(ARRAY_I32, evt_data)

#define IPV4_MA_OC_EVENT_HISTORY_FIELDS(FIELD)        \
  FIELD(TEXT, evt_class_name)                         \
  FIELD(ARRAY, evt_entry, ipv4_ma_oc_event, 1)

#define IPV4_MA_OC_REFERENCE_FIELDS(FIELD) FIELD(CHARS, InterfaceName, 64)

#define IPV4_MA_OC_IF_SUMMARY_FIELDS(FIELD)                       \
  FIELD(I32, InterfaceHandle)                                     \
  FIELD(OPTIONAL, PrimaryAddress, ipv4_if_address, 3)             \
  FIELD(OPTIONAL, ReferencedInterface, ipv4_ma_oc_reference, 4)   \
  FIELD(BOOL, EnableP2P)                                          \
  FIELD(STRUCT, EvtHist, ipv4_ma_oc_event_history, 2)

#define IPV4_MA_OC_CLIENT_SUMMARY_FIELDS(FIELD)       \
  FIELD(I32, ClientID)                                \
  FIELD(I32, InterfaceCount)                          \
  FIELD(BOOL, Connected)                              \
  FIELD(STRUCT, EvtHist, ipv4_ma_oc_event_history, 2)

// --- structures ----------------------------------------------------------------------------------

struct ipv4_group { IPV4_GROUP_FIELDS(RECORD_MEMBER) };
struct ipv4_if_address { IPV4_IF_ADDRESS_FIELDS(RECORD_MEMBER) };
struct ipv4_if_acl { IPV4_IF_ACL_FIELDS(RECORD_MEMBER) };
struct ipv4_if_acl_name { IPV4_IF_ACL_NAME_FIELDS(RECORD_MEMBER) };
struct ipv4_if_multi_acl { IPV4_IF_MULTI_ACL_FIELDS(RECORD_MEMBER) };
struct ipv4_if_helpers { IPV4_IF_HELPERS_FIELDS(RECORD_MEMBER) };
struct ipv4_if_rpf { IPV4_IF_RPF_FIELDS(RECORD_MEMBER) };
struct ipv4_if_bgp_pa_direction { IPV4_IF_BGP_PA_DIRECTION_FIELDS(RECORD_MEMBER) };
struct ipv4_if_bgp_pa { IPV4_IF_BGP_PA_FIELDS(RECORD_MEMBER) };
struct ipv4_if_detail { IPV4_IF_DETAIL_FIELDS(RECORD_MEMBER) };

struct ipv4_ma_oc_event { IPV4_MA_OC_EVENT_FIELDS(RECORD_MEMBER) };
struct ipv4_ma_oc_event_history { IPV4_MA_OC_EVENT_HISTORY_FIELDS(RECORD_MEMBER) };
struct ipv4_ma_oc_reference { IPV4_MA_OC_REFERENCE_FIELDS(RECORD_MEMBER) };
struct ipv4_ma_oc_if_summary { IPV4_MA_OC_IF_SUMMARY_FIELDS(RECORD_MEMBER) };
struct ipv4_ma_oc_client_summary { IPV4_MA_OC_CLIENT_SUMMARY_FIELDS(RECORD_MEMBER) };

// clang-format on

// Members have to stand where the platform puts them.
static_assert(offsetof(ipv4_if_detail, PrefixLength) == 28);
static_assert(offsetof(ipv4_if_detail, SecondaryAddress) == 104);
static_assert(offsetof(ipv4_if_detail, HelperAddress) == 280);
static_assert(offsetof(ipv4_if_detail, GWAddressRcvd) == 400);

#endif  // RECORDS_RECORDS_IPV4_MA_OPER_INTERFACE_H_
