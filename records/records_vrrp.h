// The records of the VRRP daemon: virtual routers, tracked items, packet errors, sessions and
// counts. The family's structures are numbered throughout, not in each schema.
#ifndef RECORDS_RECORDS_VRRP_H_
#define RECORDS_RECORDS_VRRP_H_

#include "record_exports.h"
#include "record_members.h"

// clang-format off

#define VRRP_IPV6_ADDRESS_FIELDS(FIELD) FIELD(IPV6, IPV6Address)

#define VRRP_BAG_TIMESTAMP_FIELDS(FIELD)              \
  FIELD(U32, Seconds)                                 \
  FIELD(U32, Nanoseconds)

#define VRRP_STATE_CHANGE_INFO_TYPE_FIELDS(FIELD)     \
  FIELD(ENUM, OldState, vrrp_bag_protocol_state)      \
  FIELD(ENUM, NewState, vrrp_bag_protocol_state)      \
  FIELD(ENUM, Reason, vrrp_state_change_reason)       \
  FIELD(STRUCT, Time, vrrp_bag_timestamp, 6)

#define VRRP_TRACKITEM_INFO_FIELDS(FIELD)             \
  FIELD(HANDLE, Interface)                            \
  FIELD(U32, VirtualRouterID)                         \
  FIELD(I32, TrackedItemType)                         \
  FIELD(CHARS, TrackedItemIndex, 32)                  \
  FIELD(U8, State)                                    \
  FIELD(U8, Priority)

#define VRRP_VROUTER_INFO_FIELDS(FIELD)                                   \
  FIELD(FILLED_HANDLE, Interface)                                         \
  FIELD(BOUNDED_TEXT, InterfaceName, 64)                                  \
  FIELD(U32, VirtualRouterID)                                             \
  FIELD(U8, Version)                                                      \
  FIELD(ENUM, AddressFamily, vrrp_b_af)                                   \
  FIELD(CHARS, SessionName, 16)                                           \
  FIELD(U32, Slaves)                                                      \
  FIELD(BOOL, IsSlave)                                                    \
  FIELD(CHARS, FollowedSessionName, 16)                                   \
  FIELD(U8, SecondaryAddressCount)                                        \
  FIELD(U8, OperationalAddressCount)                                      \
  FIELD(ARRAY_IPV4, OperationalAddressList)                               \
  FIELD(IPV4, PrimaryVirtualIP)                                           \
  FIELD(ARRAY, IPv6OperationalAddressList, vrrp_ipv6_address, 3)          \
  FIELD(U8, ConfiguredDownAddressCount)                                   \
  FIELD(ARRAY_IPV4, IPv4ConfiguredDownAddressList)                        \
  FIELD(ARRAY, IPv6ConfiguredDownAddressList, vrrp_ipv6_address, 3)       \
  FIELD(IPV6, VirtualLinklocalIPv6Address)                                \
  FIELD(ENUM, PrimaryState, vrrp_vip_state)                               \
  FIELD(IPV4, MasterIPAddress)                                            \
  FIELD(IPV6, MasterIPv6Address)                                          \
  FIELD(U8, MasterPriority)                                               \
  FIELD(ENUM, VRRPState, vrrp_bag_protocol_state)                         \
  FIELD(ENUM, AuthenticationType, vrrp_prot_auth)                         \
  FIELD(TEXT, AuthenticationString)                                       \
  FIELD(U32, ConfiguredAdvertizeTime)                                     \
  FIELD(U32, OperAdvertizeTime)                                           \
  FIELD(U32, MinDelayTime)                                                \
  FIELD(U32, ReloadDelayTime)                                             \
  FIELD(BOOL, DelayTimerFlag)                                             \
  FIELD(U32, DelayTimerSecs)                                              \
  FIELD(U32, DelayTimerMsecs)                                             \
  FIELD(BOOL, AuthenticationFlag)                                         \
  FIELD(BOOL, ForceTimerFlag)                                             \
  FIELD(BOOL, PreemptFlag)                                                \
  FIELD(BOOL, IPAddressOwnerFlag)                                         \
  FIELD(BOOL, IsAcceptMode)                                               \
  FIELD(I32, PreemptDelayTime)                                            \
  FIELD(U8, ConfiguredPriority)                                           \
  FIELD(U8, OperationalPriority)                                          \
  FIELD(U32, PriorityDecrement)                                           \
  FIELD(U32, TrackedInterfaceCount)                                       \
  FIELD(U32, TrackedInterfaceUpCount)                                     \
  FIELD(U32, TrackedItemCount)                                            \
  FIELD(U32, TrackedItemUpCount)                                          \
  FIELD(ARRAY, TrackItemInfo, vrrp_trackitem_info, 13)                    \
  FIELD(U32, TimeInCurrentState)                                          \
  FIELD(U32, StateChangeCount)                                            \
  FIELD(U32, TimeVrouterUp)                                               \
  FIELD(U32, MasterCount)                                                 \
  FIELD(U32, AdvertsReceivedCount)                                        \
  FIELD(U32, AdvertIntervalErrorCount)                                    \
  FIELD(U32, AdvertsSentCount)                                            \
  FIELD(U32, AuthenticationFailCount)                                     \
  FIELD(U32, TTLErrorCount)                                               \
  FIELD(U32, PriorityZeroReceivedCount)                                   \
  FIELD(U32, PriorityZeroSentCount)                                       \
  FIELD(U32, InvalidPacketCount)                                          \
  FIELD(U32, AddressListErrorCount)                                       \
  FIELD(U32, InvalidAuthTypeCount)                                        \
  FIELD(U32, AuthTypeMismatchCount)                                       \
  FIELD(U32, PktLengthErrorsCount)                                        \
  FIELD(U32, TimeStatsDiscontinuity)                                      \
  FIELD(ENUM, BFDSessionState, vrrp_bfd_session_state)                    \
  FIELD(U32, BFDInterval)                                                 \
  FIELD(U32, BFDMultiplier)                                               \
  FIELD(IPV4, BFDCfgRemoteIP)                                             \
  FIELD(IPV6, BFDConfiguredRemoteIPv6Address)                             \
  FIELD(BOOL, StateFromCheckpoint)                                        \
  FIELD(STRUCT, ResignSentTime, vrrp_bag_timestamp, 6)                    \
  FIELD(STRUCT, ResignReceivedTime, vrrp_bag_timestamp, 6)                \
  FIELD(ARRAY, StateChangeHistory, vrrp_state_change_info_type, 8)        \
  FIELD(IPV4, InterfaceIPv4Address)                                       \
  FIELD(IPV6, InterfaceIPv6Address)                                       \
  FIELD(MAC, VirtualMACAddress)                                           \
  FIELD(ENUM, VirtualMACAddressState, vrrp_vmac_state)

#define VRRP_INTERFACE_INFO_FIELDS(FIELD)             \
  FIELD(HANDLE, Interface)                            \
  FIELD(U32, InvalidChecksumCount)                    \
  FIELD(U32, InvalidVersionCount)                     \
  FIELD(U32, InvalidVRIDCount)                        \
  FIELD(U32, InvalidPacketLengthCount)

#define VRRP_SLAVE_INFO_TYPE_FIELDS(FIELD)            \
  FIELD(CHARS, SlaveInterface, 64)                    \
  FIELD(U32, SlaveVirtualRouterID)

#define VRRP_MGO_INFO_FIELDS(FIELD)                               \
  FIELD(CHARS, PrimarySessionName, 16)                            \
  FIELD(HANDLE, PrimarySessionInterface)                          \
  FIELD(ENUM, PrimaryAFName, vrrp_b_af)                           \
  FIELD(U32, PrimarySessionNumber)                                \
  FIELD(ENUM, PrimarySessionState, vrrp_bag_protocol_state)       \
  FIELD(ARRAY, SlaveList, vrrp_slave_info_type, 16)

#define VRRP_SUMMARY_INFO_FIELDS(FIELD)               \
  FIELD(U32, IPv4SessionsMasterOwner)                 \
  FIELD(U32, IPv4SessionsMaster)                      \
  FIELD(U32, IPv4SessionsBackup)                      \
  FIELD(U32, IPv4SessionsInit)                        \
  FIELD(U32, IPv4SlavesMaster)                        \
  FIELD(U32, IPv4SlavesBackup)                        \
  FIELD(U32, IPv4SlavesInit)                          \
  FIELD(U32, IPv4VirtualIPAddressesMasterOwnerUp)     \
  FIELD(U32, IPv4VirtualIPAddressesMasterOwnerDown)   \
  FIELD(U32, IPv4VirtualIPAddressesMasterUp)          \
  FIELD(U32, IPv4VirtualIPAddressesMasterDown)        \
  FIELD(U32, IPv4VirtualIPAddressesBackupUp)          \
  FIELD(U32, IPv4VirtualIPAddressesBackupDown)        \
  FIELD(U32, IPv4VirtualIPAddressesInitUp)            \
  FIELD(U32, IPv4VirtualIPAddressesInitDown)          \
  FIELD(U32, IPv6SessionsMasterOwner)                 \
  FIELD(U32, IPv6SessionsMaster)                      \
  FIELD(U32, IPv6SessionsBackup)                      \
  FIELD(U32, IPv6SessionsInit)                        \
  FIELD(U32, IPv6SlavesMaster)                        \
  FIELD(U32, IPv6SlavesBackup)                        \
  FIELD(U32, IPv6SlavesInit)                          \
  FIELD(U32, IPv6VirtualIPAddressesMasterOwnerUp)     \
  FIELD(U32, IPv6VirtualIPAddressesMasterOwnerDown)   \
  FIELD(U32, IPv6VirtualIPAddressesMasterUp)          \
  FIELD(U32, IPv6VirtualIPAddressesMasterDown)        \
  FIELD(U32, IPv6VirtualIPAddressesBackupUp)          \
  FIELD(U32, IPv6VirtualIPAddressesBackupDown)        \
  FIELD(U32, IPv6VirtualIPAddressesInitUp)            \
  FIELD(U32, IPv6VirtualIPAddressesInitDown)          \
  FIELD(U32, InterfacesIPv4StateUp)                   \
  FIELD(U32, InterfacesIPv4StateDown)                 \
  FIELD(U32, TrackedInterfacesIPv4StateUp)            \
  FIELD(U32, TrackedInterfacesIPv4StateDown)          \
  FIELD(U32, InterfacesIPv6StateUp)                   \
  FIELD(U32, InterfacesIPv6StateDown)                 \
  FIELD(U32, TrackedInterfacesIPv6StateUp)            \
  FIELD(U32, TrackedInterfacesIPv6StateDown)          \
  FIELD(U32, TrackedObjectsStateUp)                   \
  FIELD(U32, TrackedObjectsStateDown)                 \
  FIELD(U32, BFDSessionsUp)                           \
  FIELD(U32, BFDSessionsDown)                         \
  FIELD(U32, BFDSessionInactive)                      \
  FIELD(U32, IPv6BFDSessionsUp)                       \
  FIELD(U32, IPv6BFDSessionsDown)                     \
  FIELD(U32, IPv6BFDSessionInactive)

// --- structures ----------------------------------------------------------------------------------

struct vrrp_ipv6_address { VRRP_IPV6_ADDRESS_FIELDS(RECORD_MEMBER) };
struct vrrp_bag_timestamp { VRRP_BAG_TIMESTAMP_FIELDS(RECORD_MEMBER) };
struct vrrp_state_change_info_type { VRRP_STATE_CHANGE_INFO_TYPE_FIELDS(RECORD_MEMBER) };
struct vrrp_trackitem_info { VRRP_TRACKITEM_INFO_FIELDS(RECORD_MEMBER) };
struct vrrp_vrouter_info { VRRP_VROUTER_INFO_FIELDS(RECORD_MEMBER) };
struct vrrp_interface_info { VRRP_INTERFACE_INFO_FIELDS(RECORD_MEMBER) };
struct vrrp_slave_info_type { VRRP_SLAVE_INFO_TYPE_FIELDS(RECORD_MEMBER) };
struct vrrp_mgo_info { VRRP_MGO_INFO_FIELDS(RECORD_MEMBER) };
struct vrrp_summary_info { VRRP_SUMMARY_INFO_FIELDS(RECORD_MEMBER) };

// clang-format on

#endif  // RECORDS_RECORDS_VRRP_H_
