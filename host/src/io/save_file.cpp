#include "io/save_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "io/text.h"

namespace ocifip {
namespace {

[[noreturn]] void fail(const std::string& name, const std::string& reason) {
  throw input_error(in_short(name), 0, reason, {InputFault::Kind::kNotSaved});
}

[[noreturn]] void fail_for(const std::string& name, const std::string& what, int error) {
  fail(name, what + std::generic_category().message(error));
}

// A file descriptor, closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int number() const { return number_; }
  // The system may report only now that something could not be written.
  bool close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

// A new file beside another, gone again at the end unless it has taken the other's place.
class Replacement {
 public:
  Replacement(std::string name, const std::filesystem::path& file);
  ~Replacement() {
    if (!path_.empty()) unlink(path_.c_str());
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // What the other file's attributes are, this one's become.
  void take_attributes();
  void write(std::string_view text);
  // A sentence when that is not certain to last, or "".
  std::string replace();

 private:
  [[noreturn]] void fail_here() const { fail_for(name_, "cannot be saved: ", errno); }

  std::string name_;  // of the other file, for messages
  std::filesystem::path file_;
  std::string path_;
  std::unique_ptr<Descriptor> descriptor_;
};

Replacement::Replacement(std::string name, const std::filesystem::path& file)
    : name_(std::move(name)), file_(file) {
  std::string pattern = file.parent_path() / ".";
  pattern.append(file.filename()).append(".XXXXXX");
  descriptor_ = std::make_unique<Descriptor>(mkostemp(pattern.data(), O_CLOEXEC));
  if (descriptor_->number() < 0) fail_here();
  path_ = std::move(pattern);
}

void Replacement::take_attributes() {
  struct stat former {};
  if (stat(file_.c_str(), &former) != 0) fail_here();
  // A file that its user made read-only is not to be written, though its folder would allow it.
  if (faccessat(AT_FDCWD, file_.c_str(), W_OK, AT_EACCESS) != 0) fail_here();
  // Another's file becomes the user's own where the system does not allow to give it away. The
  // owner comes first: a change of it takes permissions back.
  const bool is_own = fchown(descriptor_->number(), former.st_uid, former.st_gid) == 0;
  const mode_t mode = former.st_mode & (is_own ? 07777U : 0777U);
  if (fchmod(descriptor_->number(), mode) != 0) fail_here();
}

void Replacement::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor_->number(), text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      fail_here();
    }
  }
  if (fsync(descriptor_->number()) != 0 || !descriptor_->close()) fail_here();
}

std::string Replacement::replace() {
  if (rename(path_.c_str(), file_.c_str()) != 0) fail_here();
  path_.clear();
  const Descriptor folder(open(file_.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some file systems have no fsync of folders.
  const bool is_synced = folder.number() >= 0 && (fsync(folder.number()) == 0 || errno == EINVAL);
  if (is_synced) return {};
  return in_short(name_) + " is saved, but its folder cannot be synchronized: " +
         std::generic_category().message(errno);
}

// A pipe is told by what it is: read again, it is empty.
void check_replaceable(const std::string& name, std::string_view former) {
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) fail_for(name, "cannot be saved: ", errno);
  if (!S_ISREG(status.st_mode)) fail(name, "cannot be saved: not a regular file");
  if (read_file(name) != former) fail(name, "cannot be saved: it was changed since it was read");
}

}  // namespace

std::string read_file(const std::string& name) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                             &std::fclose);
  std::string text;
  std::error_code error;
  const auto size = std::filesystem::file_size(name, error);
  if (!error) text.reserve(static_cast<std::size_t>(size) + kRoomBehindText);
  std::array<char, 65536> part;
  std::size_t length = 0;
  while (file != nullptr && (length = std::fread(part.data(), 1, part.size(), file.get())) != 0) {
    text.append(part.data(), length);
  }
  if (file == nullptr || std::ferror(file.get()) != 0) {
    throw input_error(in_short(name), 0, std::generic_category().message(errno));
  }
  return text;
}

std::string save_file(const std::string& name, std::string_view former, std::string_view text,
                      const std::function<void()>& ready) {
  check_replaceable(name, former);
  std::error_code error;
  const auto file = std::filesystem::canonical(name, error);
  if (error) fail(name, "cannot be saved: " + error.message());
  Replacement replacement(name, file);
  replacement.take_attributes();
  replacement.write(text);
  if (ready) ready();
  return replacement.replace();
}

}  // namespace ocifip
