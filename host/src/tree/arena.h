// Memory that is given back all at once.
#ifndef OCIFIP_HOST_TREE_ARENA_H_
#define OCIFIP_HOST_TREE_ARENA_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace ocifip {

// Addresses stay good until the arena goes; nothing that it holds is destroyed one by one.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;

  // The alignment is a power of two.
  void* allocate(std::size_t size, std::size_t alignment) {
    const std::size_t padding = (0 - reinterpret_cast<std::uintptr_t>(next_)) & (alignment - 1);
    if (padding + size > left_) {
      return allocate_in_new_block(size, alignment);
    }
    std::byte* place = next_ + padding;
    next_ = place + size;
    left_ -= padding + size;
    return place;
  }

  template <class T, class... Arguments>
  T* make(Arguments&&... arguments) {
    static_assert(std::is_trivially_destructible_v<T>);
    return new (allocate(sizeof(T), alignof(T))) T{std::forward<Arguments>(arguments)...};
  }

  // Value-initialised elements, one after another.
  template <class T>
  std::span<T> make_array(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    T* first = static_cast<T*>(allocate(count * sizeof(T), alignof(T)));
    std::uninitialized_value_construct_n(first, count);
    return {first, count};
  }

  // A terminated copy of a text.
  const char* copy(std::string_view text);

 private:
  void* allocate_in_new_block(std::size_t size, std::size_t alignment);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* next_ = nullptr;
  std::size_t left_ = 0;
  std::size_t block_size_ = 4096;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_ARENA_H_
