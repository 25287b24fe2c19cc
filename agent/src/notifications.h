// Events, as RFC 5277 and RFC 6470 tell them.
#ifndef OCIFIP_AGENT_NOTIFICATIONS_H_
#define OCIFIP_AGENT_NOTIFICATIONS_H_

#include <chrono>
#include <string>
#include <vector>

#include "client.h"
#include "datastores.h"
#include "ocifip/configuration.h"
#include "selection.h"

namespace ocifip::agent {

// Sends an event to all clients that have asked for it.
void notify(Clients& clients, Counters& of_all, const Elements& event, const ListKeys& keys);

// Whether there is anybody.
bool is_anyone_subscribed(const Clients& clients);

// Events. `by` is null when no session did it.
Elements config_change(const Client* by, const std::vector<ChangedNode>& changes,
                       const std::vector<Module>& modules);
Elements session_start(const Client& client);
Elements session_end(const Client& client);
Elements confirmed_commit(const Client* by, ConfirmedCommit what, std::chrono::seconds timeout);

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_NOTIFICATIONS_H_
