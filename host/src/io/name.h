// A name of a node in a document, as small as a pointer: the models' names are theirs, and only a
// name that no model has is kept by itself.
#ifndef OCIFIP_HOST_IO_NAME_H_
#define OCIFIP_HOST_IO_NAME_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ocifip {

class Name {
 public:
  Name() : Name(of(kEmpty)) {}
  // Keeps a copy of the text.
  explicit Name(std::string_view text) : bits_(text.empty() ? Name().bits_ : owned(text)) {}
  // The text must outlive the name and its copies.
  static Name of(const std::string& text) { return Name(reinterpret_cast<std::uintptr_t>(&text)); }

  Name(const Name& other) : bits_(other.is_owned() ? owned(other) : other.bits_) {}
  Name(Name&& other) noexcept : bits_(std::exchange(other.bits_, Name().bits_)) {}
  Name& operator=(Name other) noexcept {
    std::swap(bits_, other.bits_);
    return *this;
  }
  Name& operator=(std::string_view text) { return *this = Name(text); }
  ~Name() {
    if (is_owned()) delete &text();
  }

  [[nodiscard]] const std::string& text() const {
    return *reinterpret_cast<const std::string*>(bits_ & ~kOwned);
  }
  operator const std::string&() const { return text(); }  // NOLINT(google-explicit-constructor)
  operator std::string_view() const { return text(); }    // NOLINT(google-explicit-constructor)
  [[nodiscard]] const char* c_str() const { return text().c_str(); }
  [[nodiscard]] bool empty() const { return text().empty(); }
  [[nodiscard]] bool ends_with(std::string_view end) const { return text().ends_with(end); }

  friend bool operator==(const Name& left, const Name& right) {
    return left.bits_ == right.bits_ || left.text() == right.text();
  }
  friend bool operator==(const Name& left, std::string_view right) { return left.text() == right; }

 private:
  static constexpr std::uintptr_t kOwned = 1;  // in the bit that a pointer to a string leaves free

  explicit Name(std::uintptr_t bits) : bits_(bits) {}
  static std::uintptr_t owned(std::string_view text) {
    return reinterpret_cast<std::uintptr_t>(new std::string(text)) | kOwned;
  }
  [[nodiscard]] bool is_owned() const { return (bits_ & kOwned) != 0; }

  inline static const std::string kEmpty;

  std::uintptr_t bits_;
};

// Texts that are put together of names and others.
template <class Left>
std::string operator+(Left left, const Name& right) {
  return left + right.text();
}
template <class Right>
std::string operator+(const Name& left, Right right) {
  return left.text() + right;
}
inline std::string operator+(const Name& left, const Name& right) {
  return left.text() + right.text();
}

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_NAME_H_
