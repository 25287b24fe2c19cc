#include "tree/arena.h"

#include <algorithm>
#include <cstring>

namespace ocifip {
namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 20;

}  // namespace

void* Arena::allocate(std::size_t size, std::size_t alignment) {
  void* place = next_;
  if (next_ == nullptr || std::align(alignment, size, place, left_) == nullptr) {
    block_size_ = std::min(2 * block_size_, kLargestBlock);
    left_ = std::max(size + alignment, block_size_);
    blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(left_));
    place = blocks_.back().get();
    std::align(alignment, size, place, left_);
  }
  next_ = static_cast<std::byte*>(place) + size;
  left_ -= size;
  return place;
}

const char* Arena::copy(std::string_view text) {
  char* copy = static_cast<char*>(allocate(text.size() + 1, 1));
  std::copy(text.begin(), text.end(), copy);
  copy[text.size()] = '\0';
  return copy;
}

}  // namespace ocifip
