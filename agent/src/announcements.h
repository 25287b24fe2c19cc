// What the agent tells of itself: its capabilities, its modules, and its state.
#ifndef OCIFIP_AGENT_ANNOUNCEMENTS_H_
#define OCIFIP_AGENT_ANNOUNCEMENTS_H_

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "client.h"
#include "datastores.h"
#include "ocifip/configuration.h"
#include "selection.h"

namespace ocifip::agent {

using Modules = std::vector<Module>;

// A time as YANG writes it, "2026-11-22T15:04:05Z".
std::string date_and_time(std::chrono::system_clock::time_point time);

std::vector<std::string> capabilities(const Modules& modules);
// The hello of a session.
std::string hello(const Modules& modules, SessionId session);

// State that is the agent's own, by the namespace of its top element.
Elements yang_library(const Modules& modules);
Elements netconf_state(const Modules& modules, const Datastores& datastores, const Clients& clients,
                       const AgentCounters& of_all, std::chrono::system_clock::time_point start);
Elements streams();

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_ANNOUNCEMENTS_H_
