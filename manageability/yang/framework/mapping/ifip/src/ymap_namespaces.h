// Namespaces of the models.
#ifndef YMAP_NAMESPACES_H_
#define YMAP_NAMESPACES_H_

namespace ymap {

inline constexpr const char* kNamespaceInterfaces = "http://openconfig.net/yang/interfaces";
inline constexpr const char* kNamespaceIfIp = "http://openconfig.net/yang/interfaces/ip";
inline constexpr const char* kNamespaceTunnel = "http://openconfig.net/yang/interfaces/tunnel";

inline constexpr const char* kNamespaceIfmgrCfg = "urn:halvane:yang:Halvane-Ombrix-ifmgr-cfg";
inline constexpr const char* kNamespaceIpv4IoCfg = "urn:halvane:yang:Halvane-Ombrix-ipv4-io-cfg";

}  // namespace ymap

#endif  // YMAP_NAMESPACES_H_
