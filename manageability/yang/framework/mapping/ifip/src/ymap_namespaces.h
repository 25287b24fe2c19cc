// Namespaces of the models.
#ifndef YMAP_NAMESPACES_H_
#define YMAP_NAMESPACES_H_

namespace ymap {

inline constexpr const char* kNamespaceInterfaces = "http://openconfig.net/yang/interfaces";
inline constexpr const char* kNamespaceIfIp = "http://openconfig.net/yang/interfaces/ip";
inline constexpr const char* kNamespaceIfIpExt = "http://openconfig.net/yang/interfaces/ip-ext";
inline constexpr const char* kNamespaceTunnel = "http://openconfig.net/yang/interfaces/tunnel";

inline constexpr const char* kNamespaceIfmgrCfg = "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg";
inline constexpr const char* kNamespaceIpv4IoCfg = "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg";
inline constexpr const char* kNamespaceIpv4IoOper = "urn:halvane:yang:Halvane-Ombrix-ipv4-io-oper";
inline constexpr const char* kNamespaceIpv4ArpCfg = "urn:halvane:yang:Halvane-Ombrix-ipv4-arp-cfg";
inline constexpr const char* kNamespaceIpv4ArpOper =
    "urn:halvane:yang:Halvane-Ombrix-ipv4-arp-oper";
inline constexpr const char* kNamespaceIpv4VrrpCfg =
    "urn:halvane:yang:Halvane-Ombrix-ipv4-vrrp-cfg";
inline constexpr const char* kNamespaceIpv4VrrpOper =
    "urn:halvane:yang:Halvane-Ombrix-ipv4-vrrp-oper";
inline constexpr const char* kNamespaceIpv6MaCfg = "urn:halvane:yang:Halvane-Ombrix-ipv6-ma-cfg";
inline constexpr const char* kNamespaceIpv6MaOper = "urn:halvane:yang:Halvane-Ombrix-ipv6-ma-oper";
inline constexpr const char* kNamespaceIpv6NdCfg = "urn:halvane:yang:Halvane-Ombrix-ipv6-nd-cfg";
inline constexpr const char* kNamespaceIpv6NdOper = "urn:halvane:yang:Halvane-Ombrix-ipv6-nd-oper";
inline constexpr const char* kNamespacePrivateV4maOper =
    "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v4ma-oper";
inline constexpr const char* kNamespacePrivateV6maOper =
    "urn:halvane:yang:Halvane-Ombrix-PRIVATE-ocifip-v6ma-oper";

}  // namespace ymap

#endif  // YMAP_NAMESPACES_H_
