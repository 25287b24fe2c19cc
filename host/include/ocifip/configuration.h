// Configurations of a device as values: what may become of an edit is known before it happens, and
// a read goes on with the configuration that it began with.
#ifndef OCIFIP_CONFIGURATION_H_
#define OCIFIP_CONFIGURATION_H_

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ocifip/outcome.h"

namespace ocifip {

// A device's native configuration, as it was or may be. Copies share it; it never changes.
class Configuration {
 public:
  class Content;

  explicit Configuration(std::shared_ptr<const Content> content) : content_(std::move(content)) {}

  [[nodiscard]] const Content& content() const { return *content_; }
  // Whether one is a copy of the other.
  bool operator==(const Configuration& other) const = default;

 private:
  std::shared_ptr<const Content> content_;
};

// What becomes of a configuration by an edit. Nothing has happened yet.
struct Change {
  std::optional<Configuration> result;  // without value when there are refusals
  std::vector<Refusal> refusals;        // as many as are known, the first one first
  std::vector<std::string> notes;       // remarks for the user, a sentence each
  // XML elements, one behind the other: what was asked for in native terms, and the native edit
  // that makes the result of the former configuration.
  std::string native_edit;
  std::string difference;
};

// An instance path with the name of the module before each name:
// "/openconfig-interfaces:interfaces/openconfig-interfaces:interface[openconfig-interfaces:name='Eth1']"
struct DataPath {
  std::string text;
  std::vector<std::string> modules;  // those in it, each once
};

// A node that two configurations differ in.
struct ChangedNode {
  enum class Kind { kCreated, kChanged, kDeleted };

  Kind kind = Kind::kChanged;
  DataPath path;
};

// A read in steps, so that its caller can do other things in between. It keeps the configuration
// that it began with; its host outlives it.
class Reading {
 public:
  virtual ~Reading() = default;

  // Reads on for some interfaces. Whether there is more to do. Throws InputError.
  virtual bool step() = 0;
  // What was read, when there is nothing more to do: XML elements, one behind the other.
  virtual Outcome finish() = 0;
};

// A YANG module that the host has.
struct Module {
  std::string name;
  std::string revision;  // "2026-11-21", or ""
  std::string name_space;
  bool is_implemented = true;         // else it is there for its types alone
  std::vector<std::string> features;  // that are on
};

}  // namespace ocifip

#endif  // OCIFIP_CONFIGURATION_H_
