// The reference host as its users see it: a platform that loads the mapping plug-in and runs whole
// requests through it. The command line tool, the tests and the benchmarks are written against
// this.
#ifndef OCIFIP_HOST_H_
#define OCIFIP_HOST_H_

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ocifip/configuration.h"
#include "ocifip/outcome.h"
#include "ocifip/progress.h"

namespace ocifip {

// What is wrong with input, for programs.
struct InputFault {
  enum class Kind {
    kOther,             // none of the others, or with the device's own configuration
    kMalformed,         // the text is not one of its encoding, or the document has not its form
    kUnknownNode,       // no model, or no mapping, has the node
    kUnknownNamespace,  // no model has the module of the node
    kUnknownAttribute,  // of an XML element, or an annotation in JSON
    kBadAttribute,      // one that is known has a wrong value, or is there twice
    kBadValue,          // of a leaf or key; or a node of another kind, or there twice
    kMissingNode,       // something must be there, such as a key
    kNotSaved           // the device file could not be written; nothing has happened
  };

  Kind kind = Kind::kOther;
  std::string tag{};         // of the node or attribute, or ""
  std::string path{};        // instance path of the node, or of the one with the attribute; or ""
  std::string reason{};      // the sentence alone, without the file and its line
  std::string name_space{};  // that no model has
  std::string element{};     // the node with the attribute
};

// Input that cannot be read: "FILE:LINE: reason", or "FILE: reason" where no line is known.
class InputError : public std::runtime_error {
 public:
  explicit InputError(const std::string& what) : InputError(what, InputFault{}) {}
  // Without a reason, the fault's is all that is said.
  InputError(const std::string& what, InputFault fault) : std::runtime_error(what) {
    if (fault.reason.empty()) fault.reason = what;
    fault_ = std::make_shared<const InputFault>(std::move(fault));
  }

  [[nodiscard]] const InputFault& fault() const { return *fault_; }

 private:
  std::shared_ptr<const InputFault> fault_;  // copies of exceptions do not throw
};

// The plug-in or a YANG module cannot be loaded.
class LoadError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Encoding { kJson, kXml };
enum class Format { kTree, kJson, kXml, kCalls };
enum class Content { kConfig, kAll };
enum class DefaultOperation { kMerge, kCreate, kReplace, kNone };

struct HostOptions {
  std::string plugin{};                 // path of the mapping plug-in
  std::string models{};                 // folder of the YANG modules
  std::optional<std::string> device{};  // device file; the built-in example device when absent
  bool trace = false;                   // trace lines go to standard error
  // Nodes and values of requests and native data reach the mapping as they came, whatever the
  // models say of them.
  bool unchecked = false;
  // What a request has outside of interface IP is passed over, with a note.
  bool only_ip = false;
  Progress* progress = nullptr;  // told what the host is at; outlives the host
};

// A document as it was given: a file's or standard input's text.
struct Source {
  std::string name;  // for messages: the file's name, or "standard input"
  std::string text;
  Encoding encoding = Encoding::kJson;
};

// The content of a node, as JSON or XML.
struct PathBody {
  std::string path;  // instance path of the node
  Source body;
};

struct EditRequest {
  std::optional<Source> document;
  std::vector<std::string> deletes;  // instance paths
  // Of the nodes that carry none. When absent it is that of the document's NETCONF edit-config, or
  // merge.
  std::optional<DefaultOperation> operation{};
  std::vector<PathBody> bodies{};  // a replace by default is one of their nodes alone
};

struct QueryRequest {
  std::optional<Source> document;
  std::vector<std::string> paths;  // instance paths
  // When absent it is configuration alone for a document that is a NETCONF get-config, else all.
  std::optional<Content> content{};
  // A leaf with a value chooses what it is in, as a key does, and what no model knows selects
  // nothing: for read() alone.
  bool values_choose = false;
};

// Native data to be shown in OpenConfig terms.
struct ReportRequest {
  Source data;
  Content content = Content::kAll;
};

// An edit that is carried out on the device.
struct ApplyRequest {
  EditRequest edit;
  bool save = false;  // write the device file as well
  // Called, if there is something to save, when nothing is left to do but to exchange the files.
  // What it throws is passed on, and nothing is saved or changed.
  std::function<void(const Outcome&)> before_saving{};
};

// What becomes of a leaf in one use.
struct LeafUse {
  // Ignored: accepted, and nothing comes of it.
  enum class Result { kMapped, kIgnored, kRefused };

  Result result = Result::kIgnored;
  // Of the native nodes, when it is mapped: "/MODULE:a/b", with the module of each node that is not
  // in that of the one before; in schema order, each once.
  std::vector<std::string> native;
  std::string code;  // name of the result, as "unsupported", when it is refused

  bool operator==(const LeafUse&) const = default;
};

struct LeafCoverage {
  std::string path;                    // in the form of the native ones
  LeafUse edit;                        // merged, replaced and deleted
  LeafUse read;                        // with state
  std::optional<LeafUse> read_config;  // without, where that makes a difference
  LeafUse read_back;                   // mapped from the native nodes, or ignored
};

// What the mapping does with each leaf of IP on a subinterface, in schema order.
struct Coverage {
  std::vector<LeafCoverage> leaves;

  // As JSON an array with an object, in a line of its own, for each leaf; as a tree a table. Throws
  // InputError for the other formats, which have no form for it.
  [[nodiscard]] std::string text(Format format) const;
};

class Host {
 public:
  // Loads the models, the device and the plug-in. Throws LoadError or InputError. The native
  // configuration of the device is held against the models when a request first concerns it.
  explicit Host(const HostOptions& options);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // Throws InputError unless the models accept all of the device's native configuration.
  void check_device() const;

  // An OpenConfig edit becomes a native edit. Throws InputError.
  Outcome edit(const EditRequest& request, Format format);

  // An OpenConfig edit becomes a native edit, which is applied to the device: all of it, or nothing
  // when there is a refusal or an error. The text is what changed: as JSON and XML the edit that
  // makes the new configuration of the former one, as a tree a line a change, as calls those of
  // edit(). Later requests find the device changed. With `save` the device file, which must have
  // been given, is replaced atomically. Throws InputError, also for a file that cannot be written
  // or that was changed since it was read.
  Outcome apply(const ApplyRequest& request, Format format);

  // An OpenConfig read becomes native queries. Throws InputError.
  Outcome query(const QueryRequest& request, Format format);

  // An OpenConfig read becomes native queries, and what the device has of the data that they ask
  // for becomes the OpenConfig reply: the part of it that the request asks for. As calls, those of
  // both directions. Throws InputError.
  Outcome get(const QueryRequest& request, Format format);

  // Native data becomes OpenConfig. Throws InputError.
  Outcome report(const ReportRequest& request, Format format);

  // The plug-in's registration records, with the names of the functions that filled them and of
  // their callbacks: as JSON an array of objects, as a tree the plug-in's version and then each
  // with its fields below it. Throws InputError for the other formats, which have no form for them.
  [[nodiscard]] std::string registrations(Format format) const;

  // What the mapping does with each leaf, found by making requests of it, whatever the device is.
  [[nodiscard]] Coverage coverage() const;

  // The device's configuration as it is now.
  [[nodiscard]] Configuration running() const;

  // One without any configuration. What the device file has of state stays.
  [[nodiscard]] Configuration empty() const;

  // What an edit makes of a configuration. It may have OpenConfig nodes, native nodes, or both: the
  // OpenConfig part is mapped for a device with that configuration, and neither may change what the
  // other changes. Nothing happens to the device. Throws InputError.
  Change change(const Configuration& base, const EditRequest& request);

  // What is wrong with a configuration as a whole; nothing when the models accept it.
  [[nodiscard]] std::optional<Refusal> validate(const Configuration& configuration) const;

  // Makes a configuration the device's: atomically, and in the device file as well with `save`.
  // Nothing happens when it is so already, and in the file if it is to be. Throws InputError when
  // it cannot be saved; then nothing has happened. Returns remarks for the user, a sentence each.
  std::vector<std::string> commit(const Configuration& configuration, bool save);

  // What two configurations differ in: the topmost nodes that are new or gone, and the leaves that
  // have other values; in native terms, and then as OpenConfig shows it.
  [[nodiscard]] std::vector<ChangedNode> changes(const Configuration& before,
                                                 const Configuration& after);

  // Begins a read of OpenConfig and native nodes from a configuration: of those that the request
  // names, or of everything for a request without document and paths, or whose document asks for
  // all. Content kConfig leaves out all state. The text is XML, that of OpenConfig first. Throws
  // InputError.
  [[nodiscard]] std::unique_ptr<Reading> read(const Configuration& configuration,
                                              const QueryRequest& request);

  // All YANG modules, implemented ones first, each group by name.
  [[nodiscard]] std::vector<Module> modules() const;

  // The YANG text of a module or submodule: its file's, or as libyang prints one that is built in.
  // Nothing when there is none of that name and revision, "" for any.
  [[nodiscard]] std::optional<std::string> module_text(const std::string& name,
                                                       const std::string& revision) const;

  // The path of a refusal or a fault with the modules of its nodes: as far as the models know them.
  [[nodiscard]] DataPath data_path(const std::string& instance_path) const;

  // The containers and lists of the models that are of a namespace and name, or have such leaves:
  // the namespaces and names of the nodes from the top down to each.
  [[nodiscard]] std::vector<std::vector<std::pair<std::string, std::string>>> paths_to(
      const std::string& name_space, const std::string& name) const;

  // The names of the keys of a list, given such a path. None for another node.
  [[nodiscard]] std::vector<std::string> list_keys(
      const std::vector<std::pair<std::string, std::string>>& path) const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_H_
