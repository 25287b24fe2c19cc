// A name of a node in a document, as small as a pointer: the models' names are theirs, and only a
// name that no model has is kept by itself.
#ifndef OCIFIP_HOST_IO_NAME_H_
#define OCIFIP_HOST_IO_NAME_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ocifip {

class Name {
 public:
  Name() : Name(of(kEmpty)) {}
  // Keeps a copy of the text.
  explicit Name(std::string_view text) : place_(text.empty() ? place_of(kEmpty) : copy(text)) {}
  // The text must outlive the name and its copies.
  static Name of(const std::string& text) {
    Name name{nullptr};
    name.place_ = place_of(text);
    return name;
  }

  Name(const Name& other) : place_(other.is_copy() ? copy(other) : other.place_) {}
  Name(Name&& other) noexcept : place_(std::exchange(other.place_, place_of(kEmpty))) {}
  Name& operator=(Name other) noexcept {
    std::swap(place_, other.place_);
    return *this;
  }
  Name& operator=(std::string_view text) { return *this = Name(text); }
  ~Name() {
    const std::string* kept = &text();
    if (is_copy()) delete kept;
  }

  [[nodiscard]] const std::string& text() const {
    return *reinterpret_cast<const std::string*>(is_copy() ? place_ - kCopy : place_);
  }
  operator const std::string&() const { return text(); }  // NOLINT(google-explicit-constructor)
  operator std::string_view() const { return text(); }    // NOLINT(google-explicit-constructor)
  [[nodiscard]] const char* c_str() const { return text().c_str(); }
  [[nodiscard]] bool empty() const { return text().empty(); }
  [[nodiscard]] bool ends_with(std::string_view end) const { return text().ends_with(end); }

  friend bool operator==(const Name& left, const Name& right) {
    return left.place_ == right.place_ || left.text() == right.text();
  }
  friend bool operator==(const Name& left, std::string_view right) { return left.text() == right; }

 private:
  // What a pointer to a copy is ahead of it: the bit that such pointers leave free.
  static constexpr std::ptrdiff_t kCopy = 1;

  explicit Name(std::nullptr_t /*nothing yet*/) {}
  static const char* place_of(const std::string& text) {
    return reinterpret_cast<const char*>(&text);
  }
  static const char* copy(std::string_view text) {
    return place_of(*new std::string(text)) + kCopy;
  }
  [[nodiscard]] bool is_copy() const {
    return (reinterpret_cast<std::uintptr_t>(place_) & std::uintptr_t{kCopy}) != 0;
  }

  inline static const std::string kEmpty;

  const char* place_ = nullptr;
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
