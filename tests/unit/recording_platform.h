// A platform that records: it supplies every service that the plug-in uses, writes down each call
// as one readable line, and answers as the test tells it.
#ifndef RECORDING_PLATFORM_H_
#define RECORDING_PLATFORM_H_

#include <cstdint>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "im/interface_manager.h"
#include "sysdb/sysdb.h"
#include "yfw/context.h"
#include "yfw/mapping.h"
#include "yfw/stack.h"

struct yfw_itree_stack {
  std::vector<const nidl_yfw_datatree*> nodes;
};

namespace recording {

using Node = nidl_yfw_datatree;

// Kinds of recorded calls; a set of them is their sum. Each call is one line, a blank between its
// words.
//
//   kWrites     add MODULE PATH[ ="VALUE"][ OPERATION[!]][ new][ flags=N][ stored][ base=NAME]
//               of add_path: the source's operation, "!" when it carries the mark of a rewritten
//               one; "new" for create=1; no flags for 1, the usual ones;
//               mirror MODULE JOINED-STEPS top=TOP steps=N in=TAG
//   kHierarchy  push KIND TAG, pop TAG, current LIST-PATH; remember TAG, forget TAG (the stack of
//               visited entries); list TAG, unlist TAG (the output list)
//   kLines      trc|err FUNCTION MESSAGE: the lines of the trace buffer, line feeds as "\n"
//   kRefusals   error_path, strdup ="TEXT" as NAME, free ="TEXT"
//   kQuestions  is_request_add TAG, leafref LIST-PATH CONTAINER ="VALUE" TAG
//   kNotes      what a test's own callbacks note
//   kDevice     interface manager, address codec, node identity and database: SERVICE ARGUMENT ...
//   kTexts      copy|append CALLER size=N count=N ="SOURCE", compare maximum=N ="TEXT" ="TEXT"
//
// A call that was told to fail ends in " result=0x...".
enum Kind : unsigned {
  kWrites = 1,
  kHierarchy = 2,
  kLines = 4,
  kRefusals = 8,
  kQuestions = 16,
  kNotes = 32,
  kDevice = 64,
  kTexts = 128
};

// A line handed to the debug log.
struct LogLine {
  void* channel;
  std::uint32_t reserved;  // the five zeros, or-ed
  std::uint32_t* word;
  std::uint32_t word_value;
  std::string format;
  std::string text;
};

// A line handed to the trace buffer.
struct BufferLine {
  void* buffer;
  std::uint64_t flags;
  std::string text;
};

// A module's namespace without what those of its kind begin with.
std::string short_module(const char* module_namespace);

struct Prefix {
  std::string address;  // empty: the interface manager's answer lists nothing
  std::uint32_t length = 0;
};

// The IPv4 addresses of an interface of the device.
struct Addresses {
  Prefix primary{};
  std::vector<Prefix> secondaries{};
};

// The database binding that tests hand to the unload hook.
inline sysdb_handle* const kDatabase = reinterpret_cast<sysdb_handle*>(0x5db);

inline constexpr imc_connid kConnection = 7;         // of the plug-in
inline constexpr imc_connid kSiblingConnection = 9;  // of the interfaces mapping

class Platform {
 public:
  // What the platform answers.
  std::map<std::string, Addresses> interfaces;  // by internal name; others are unknown
  cerrno attribute_status = 0;                  // of every address attribute
  bool takes_entries = true;                    // into the output list
  bool client_installed = true;                 // the database client's file is readable
  bool logs_errors = true;
  bool logs_traces = true;
  std::function<void()> on_write;  // called on each add_path

  // Output nodes besides the root, by the path of the write that they are handed out for, and how
  // the record calls them.
  std::map<std::string, Node*> created_nodes;
  std::map<const Node*, std::string> base_names;

  // What it saw.
  std::vector<LogLine> log;
  std::vector<BufferLine> buffer;
  std::vector<std::string> faults;  // calls out of balance, wrong handles; a test fails on any
  std::vector<const Node*> hierarchy;
  std::vector<const Node*> output_list;
  yfw_itree_stack visited;
  int lists_alive = 0;               // decoded address lists
  std::uint32_t trace_sequence = 0;  // of the last trace buffer line
  const Node* root = nullptr;        // the output tree; calls that name another are faults

  // Lets a service fail at its nth call from now on, from 1. Services are named by the words of
  // their line before the first argument; "any" counts the calls of all services that can fail.
  void fail(const std::string& service, int nth, cerrno result);
  [[nodiscard]] int calls_of(const std::string& service) const;

  // The recorded calls of some kinds, a line each.
  [[nodiscard]] std::string recorded(unsigned kinds) const;
  void forget_calls();

  // For the services and the callbacks of tests: counts the call and gives its planned failure, or
  // 0. `serve` records it with its arguments, too.
  cerrno outcome(const std::string& service);
  template <typename... Arguments>
  cerrno serve(Kind kind, const std::string& service, const Arguments&... arguments) {
    std::ostringstream line;
    line << service;
    ((line << ' ' << arguments), ...);
    const cerrno result = outcome(service);
    if (result != 0) {
      line << " result=0x" << std::hex << result;
    }
    record(kind, line.str());
    return result;
  }
  void record(Kind kind, std::string line);

 private:
  std::vector<std::pair<Kind, std::string>> calls_;
  std::map<std::string, int> counts_;
  std::map<std::pair<std::string, int>, cerrno> failures_;
};

extern Platform platform;

}  // namespace recording

#endif  // RECORDING_PLATFORM_H_
