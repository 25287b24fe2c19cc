// The reference host as its users see it: a platform that loads the mapping plug-in and runs whole
// requests through it. The command line tool, the tests and the benchmarks are written against
// this.
#ifndef OCIFIP_HOST_H_
#define OCIFIP_HOST_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ocifip/progress.h"

namespace ocifip {

// Input that cannot be read: "FILE:LINE: reason", or "FILE: reason" where no line is known.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
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
};

// Native data to be shown in OpenConfig terms.
struct ReportRequest {
  Source data;
  Content content = Content::kAll;
};

// Why the mapping refused a request, or the device the native edit that came of it.
struct Refusal {
  std::uint32_t code = 0;
  std::string tag;      // of the refused node, else of the innermost one being walked; or ""
  std::string path;     // instance path of the node, or of the nodes being walked
  std::string message;  // the mapping's own sentence, the code's text, or libyang's reason
  std::string hint{};   // the host's sentence beside it, without a full stop; "" for none

  // `"enabled" at /interfaces/... : MESSAGE (0xaaf2ee00 unsupported)` in one line, with the hint
  // behind the message, or before that of a failed copy of a text. Without a tag the path comes
  // first, without a path the message.
  [[nodiscard]] std::string text() const;
};

struct Outcome {
  std::string text;                // what was asked for, in the format asked for
  std::optional<Refusal> refusal;  // set: text is empty, but for Format::kCalls
  std::vector<std::string> notes;  // remarks for the user, a sentence each
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

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_H_
