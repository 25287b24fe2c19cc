// Stems of the paths that are written and asked for, so that a row or a callback shows its own
// part.
#ifndef YMAP_PATHS_H_
#define YMAP_PATHS_H_

// OpenConfig.
#define YMAP_INTERFACE "/interfaces/interface"
#define YMAP_SUBINTERFACE YMAP_INTERFACE "/subinterfaces/subinterface"
#define YMAP_TUNNEL YMAP_INTERFACE "/tunnel"
// Of a family, "ipv4" or "ipv6".
#define YMAP_ADDRESS(family) YMAP_SUBINTERFACE "/" family "/addresses/address"
#define YMAP_VRRP_GROUP(family) YMAP_ADDRESS(family) "/vrrp/vrrp-group"
#define YMAP_NEIGHBORS(family) YMAP_SUBINTERFACE "/" family "/neighbors"
#define YMAP_NEIGHBOR(family) YMAP_NEIGHBORS(family) "/neighbor"

// Native configuration of an interface.
#define YMAP_NATIVE_INTERFACE "/interface-configurations/interface-configuration"
#define YMAP_IPV4_NETWORK YMAP_NATIVE_INTERFACE "/ipv4-network"
#define YMAP_IPV6_NETWORK YMAP_NATIVE_INTERFACE "/ipv6-network"
#define YMAP_IPV6_REGULAR_ADDRESS YMAP_IPV6_NETWORK "/addresses/regular-addresses/regular-address"
#define YMAP_IPV6_NEIGHBOR YMAP_NATIVE_INTERFACE "/ipv6-neighbor"

#define YMAP_IPV4_ARP YMAP_NATIVE_INTERFACE "/ipv4arp"

// Native static neighbors.
#define YMAP_ARP_VRF "/arpgmp/vrf"
#define YMAP_STATIC_ARP YMAP_ARP_VRF "/entries/entry"
#define YMAP_STATIC_NEIGHBOR "/ipv6-neighbor/neighbors/neighbor"

// Native virtual routers of a family, "ipv4" or "ipv6".
#define YMAP_VRRP_INTERFACE "/vrrp/interfaces/interface"
#define YMAP_VRRP_ROUTERS(family) YMAP_VRRP_INTERFACE "/" family "/version3/virtual-routers"
#define YMAP_VRRP_ROUTER(family) YMAP_VRRP_ROUTERS(family) "/virtual-router"
#define YMAP_VRRP_TRACK(family) YMAP_VRRP_ROUTER(family) "/tracks/track"

// Native operational data.
#define YMAP_IPV4_NODE "/ipv4-network/nodes/node"
#define YMAP_IPV6_NODE "/ipv6-network/nodes/node"
#define YMAP_IPV6_DETAIL YMAP_IPV6_NODE "/interface-data/vrfs/vrf/details/detail"
#define YMAP_ARP_NODE "/arp/nodes/node"
#define YMAP_ARP_ENTRY YMAP_ARP_NODE "/entries/entry"
#define YMAP_ND_NODE "/ipv6-node-discovery/nodes/node"
#define YMAP_ND_INTERFACE YMAP_ND_NODE "/neighbor-interfaces/neighbor-interface"
#define YMAP_ND_HOST YMAP_ND_INTERFACE "/host-addresses/host-address"
#define YMAP_VRRP_OPER_ROUTERS(family) "/vrrp/" family "/virtual-routers"
#define YMAP_VRRP_OPER_ROUTER(family) YMAP_VRRP_OPER_ROUTERS(family) "/virtual-router"

#endif  // YMAP_PATHS_H_
