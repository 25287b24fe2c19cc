// A device's native configuration, of which only what is needed becomes a document.
#ifndef OCIFIP_HOST_IO_NATIVE_CONFIGURATION_H_
#define OCIFIP_HOST_IO_NATIVE_CONFIGURATION_H_

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "io/document.h"

namespace ocifip {

// Some of a device's interfaces and subinterfaces.
class InterfaceNames {
 public:
  InterfaceNames() = default;
  InterfaceNames(std::initializer_list<std::string> native_names) : natives_(native_names) {}

  void add(const std::string& native_name) { natives_.insert(native_name); }
  // An interface with all of its subinterfaces, which have their indexes behind a dot.
  void add_all_of(const std::string& interface) { interfaces_.insert(interface); }
  void add(const InterfaceNames& others);

  [[nodiscard]] bool contains(std::string_view native_name) const;
  // Whether all of the others are among them.
  [[nodiscard]] bool contains(const InterfaceNames& others) const;

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  using Names = std::unordered_set<std::string, Hash, std::equal_to<>>;

  Names natives_;
  Names interfaces_;  // of which all is meant
};

// The key of a list by which its entries are of an interface or subinterface; null when there is
// none, and for other nodes.
const std::string* interface_key(const lysc_node* list);

// An entry that is of an interface.
struct InterfaceEntry {
  const lysc_node* list = nullptr;
  std::string_view interface;  // native name
  bool is_active = true;       // unless the list has entries for interfaces that are not there
};

// Where a configuration is read from when it is asked for.
class NativeText {
 public:
  NativeText() = default;
  NativeText(const NativeText&) = delete;
  NativeText& operator=(const NativeText&) = delete;
  virtual ~NativeText() = default;

  // All of it, with the lines that it stands on, or without them in less time.
  [[nodiscard]] virtual Document read_exactly() const = 0;
  [[nodiscard]] virtual Document read_all() const = 0;
  // What is no interface's, and the entries of these interfaces.
  [[nodiscard]] virtual Document read(const InterfaceNames& interfaces) const = 0;
  // The entries of interfaces, in their order.
  [[nodiscard]] virtual const std::vector<InterfaceEntry>& entries() const = 0;
};

// Copies share their documents, and what one of them has read.
class NativeConfiguration {
 public:
  NativeConfiguration() : NativeConfiguration(Document()) {}
  explicit NativeConfiguration(std::shared_ptr<const Document> whole)
      : read_(std::make_shared<Read>()) {
    read_->whole = std::move(whole);
  }
  explicit NativeConfiguration(Document whole)
      : NativeConfiguration(std::make_shared<const Document>(std::move(whole))) {}
  explicit NativeConfiguration(std::shared_ptr<const NativeText> text)
      : text_(std::move(text)), read_(std::make_shared<Read>()) {}

  // Documents stay where they are for as long as the configuration, or a copy, does. Reading them
  // throws InputError for what is wrong in the text.
  //
  // All of it.
  [[nodiscard]] const Document& whole() const;
  // The same, with lines.
  [[nodiscard]] const Document& with_lines() const;
  // What is no interface's, and the entries of these interfaces; it may have those of others.
  [[nodiscard]] const Document& part(const InterfaceNames& interfaces) const;

  // Whether all of it has been read: nothing is gained by asking for a part.
  [[nodiscard]] bool is_read() const { return read_->whole != nullptr; }

  [[nodiscard]] std::vector<InterfaceEntry> entries() const;

 private:
  struct Read {
    std::shared_ptr<const Document> whole;
    std::shared_ptr<const Document> with_lines;
    std::vector<std::shared_ptr<const Document>> parts;  // each has more than those before
    InterfaceNames names;                                // of the last part
  };

  std::shared_ptr<const NativeText> text_;  // null: there is only the document
  std::shared_ptr<Read> read_;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_NATIVE_CONFIGURATION_H_
