#include "notifications.h"

#include <algorithm>

#include "announcements.h"
#include "names.h"
#include "operation_parts.h"
#include "path_element.h"

namespace ocifip::agent {
namespace {

// A client that has so much to read does not read.
constexpr std::size_t kMostBacklog = std::size_t{256} << 20;

// What an expression may take for one event, for which all others wait.
constexpr std::chrono::seconds kPatience{2};

std::string event(const std::string& name, const Elements& content) {
  return "<" + name + " xmlns=\"" + std::string(kConfigChange) + "\">" + content + "</" + name +
         ">";
}

std::string session_of(const Client& client) {
  return element("username", client.user.name) + element("session-id", std::to_string(client.id));
}

const char* name_of(ChangedNode::Kind kind) {
  switch (kind) {
    case ChangedNode::Kind::kCreated:
      return "create";
    case ChangedNode::Kind::kDeleted:
      return "delete";
    case ChangedNode::Kind::kChanged:
      break;
  }
  return "replace";
}

const char* name_of(ConfirmedCommit what) {
  switch (what) {
    case ConfirmedCommit::kStart:
      return "start";
    case ConfirmedCommit::kCancel:
      return "cancel";
    case ConfirmedCommit::kTimeout:
      return "timeout";
    case ConfirmedCommit::kExtend:
      return "extend";
    case ConfirmedCommit::kComplete:
      break;
  }
  return "complete";
}

const char* name_of(Ending ending) {
  switch (ending) {
    case Ending::kClosed:
      return "closed";
    case Ending::kKilled:
      return "killed";
    case Ending::kDropped:
      break;
  }
  return "dropped";
}

std::string edit_of(const ChangedNode& change, const std::vector<Module>& modules) {
  return "<edit>" + path_element("target", change.path, modules) +
         element("operation", name_of(change.kind)) + "</edit>";
}

// The part of an event that a client wants to see.
Elements chosen(const Elements& event, const Subscription& subscription, const ListKeys& keys) {
  const xmlNode* filter = subscription.filter;
  if (filter == nullptr) return event;
  return type_of(filter) == FilterType::kSubtree
             ? select_subtree(event, filter)
             : XPathSelection::select_now(event, xpath_of(filter), keys, kPatience);
}

}  // namespace

bool is_anyone_subscribed(const Clients& clients) {
  return std::any_of(clients.begin(), clients.end(),
                     [](const auto& each) { return each.second.subscription.has_value(); });
}

void notify(Clients& clients, Counters& of_all, const Elements& event, const ListKeys& keys) {
  const std::string begin = "<notification xmlns=\"" + std::string(kNotification) + "\">" +
                            element("eventTime", date_and_time(std::chrono::system_clock::now()));
  for (auto& [id, client] : clients) {
    if (!client.subscription) continue;
    if (client.peer.backlog() > kMostBacklog) {
      client.peer.abort();
      client.subscription.reset();
      continue;
    }
    try {
      const Elements content = chosen(event, *client.subscription, keys);
      if (content.empty()) continue;
      client.peer.send(begin + content + "</notification>");
    } catch (const OperationError& error) {
      // One that takes too much would lose events. Others say nothing of this one.
      if (error.errors.front().tag == tags::kResourceDenied) {
        client.peer.abort();
        client.subscription.reset();
      }
      continue;
    }
    client.counters.out_notifications += 1;
    of_all.out_notifications += 1;
  }
}

Elements config_change(const Client* by, const std::vector<ChangedNode>& changes,
                       const std::vector<Module>& modules) {
  Elements content = "<changed-by>" + (by == nullptr ? "<server/>" : session_of(*by)) +
                     "</changed-by><datastore>running</datastore>";
  for (const ChangedNode& change : changes) content += edit_of(change, modules);
  return event("netconf-config-change", content);
}

Elements session_start(const Client& client) {
  return event("netconf-session-start", session_of(client));
}

Elements session_end(const Client& client) {
  Elements content = session_of(client);
  if (client.killed_by != 0) content += element("killed-by", std::to_string(client.killed_by));
  return event("netconf-session-end",
               content + element("termination-reason", name_of(client.ending)));
}

Elements confirmed_commit(const Client* by, ConfirmedCommit what, std::chrono::seconds timeout) {
  Elements content = by == nullptr ? Elements() : session_of(*by);
  content += element("confirm-event", name_of(what));
  if (timeout.count() > 0) content += element("timeout", std::to_string(timeout.count()));
  return event("netconf-confirmed-commit", content);
}

}  // namespace ocifip::agent
