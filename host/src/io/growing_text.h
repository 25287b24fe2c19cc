// A text that is put together of many short ones.
#ifndef OCIFIP_HOST_IO_GROWING_TEXT_H_
#define OCIFIP_HOST_IO_GROWING_TEXT_H_

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace ocifip {

// Its functions are inline, as those of std::string are not. With them, JSON is printed in two
// thirds of the instructions.
class GrowingText {
 public:
  void add(char c) {
    if (size_ == capacity_) grow(1);
    text_[size_++] = c;
  }
  void add(std::string_view text) {
    if (capacity_ - size_ < text.size()) grow(text.size());
    std::memcpy(text_.get() + size_, text.data(), text.size());
    size_ += text.size();
  }
  void add(std::size_t count, char c) {
    if (capacity_ - size_ < count) grow(count);
    std::memset(text_.get() + size_, c, count);
    size_ += count;
  }

  [[nodiscard]] std::string text() const { return {text_.get(), size_}; }

 private:
  static constexpr std::size_t kFirstCapacity = 4096;

  void grow(std::size_t more) {
    capacity_ = std::max({kFirstCapacity, 2 * capacity_, size_ + more});
    auto larger = std::make_unique_for_overwrite<char[]>(capacity_);
    if (size_ != 0) std::memcpy(larger.get(), text_.get(), size_);
    text_ = std::move(larger);
  }

  std::unique_ptr<char[]> text_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_IO_GROWING_TEXT_H_
