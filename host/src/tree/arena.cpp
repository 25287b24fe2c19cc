#include "tree/arena.h"

#include <algorithm>
#include <cstring>

namespace ocifip {
namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 20;

}  // namespace

void* Arena::allocate_in_new_block(std::size_t size, std::size_t alignment) {
  block_size_ = std::min(2 * block_size_, kLargestBlock);
  left_ = std::max(size + alignment, block_size_);
  blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(left_));
  next_ = blocks_.back().get();
  return allocate(size, alignment);
}

const char* Arena::copy(std::string_view text) {
  char* copy = static_cast<char*>(allocate(text.size() + 1, 1));
  std::copy(text.begin(), text.end(), copy);
  copy[text.size()] = '\0';
  return copy;
}

}  // namespace ocifip
