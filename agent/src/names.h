// Namespaces and capabilities of NETCONF.
#ifndef OCIFIP_AGENT_NAMES_H_
#define OCIFIP_AGENT_NAMES_H_

#include <string_view>

namespace ocifip::agent {

inline constexpr std::string_view kBase = "urn:ietf:params:xml:ns:netconf:base:1.0";
inline constexpr std::string_view kMonitoring =
    "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring";
inline constexpr std::string_view kNotification = "urn:ietf:params:xml:ns:netconf:notification:1.0";
inline constexpr std::string_view kStreams = "urn:ietf:params:xml:ns:netmod:notification";
inline constexpr std::string_view kConfigChange =
    "urn:ietf:params:xml:ns:yang:ietf-netconf-notifications";
inline constexpr std::string_view kLibrary = "urn:ietf:params:xml:ns:yang:ietf-yang-library";
inline constexpr std::string_view kDatastores = "urn:ietf:params:xml:ns:yang:ietf-datastores";
inline constexpr std::string_view kPreview = "urn:ocifip:yang:ocifip-preview";

inline constexpr std::string_view kBase10 = "urn:ietf:params:netconf:base:1.0";
inline constexpr std::string_view kBase11 = "urn:ietf:params:netconf:base:1.1";

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_NAMES_H_
