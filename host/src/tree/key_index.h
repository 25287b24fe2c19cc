// Finds the entries of a long list by their keys in constant time.
#ifndef OCIFIP_HOST_TREE_KEY_INDEX_H_
#define OCIFIP_HOST_TREE_KEY_INDEX_H_

#include <cstddef>
#include <span>

#include "tree/arena.h"

namespace ocifip {

struct OutputNode;

// A hash table with open addressing, to which entries are only ever added. It lives in an arena.
class KeyIndex {
 public:
  void insert(Arena& arena, std::size_t hash, OutputNode* entry) {
    if (2 * (count_ + 1) > cells_.size()) {
      grow(arena);
    }
    cells_[free_cell(hash)] = {hash, entry};
    ++count_;
  }

  // The first entry that was inserted under a hash and matches, or null.
  template <class Matches>
  OutputNode* find(std::size_t hash, const Matches& matches) const {
    for (std::size_t i = first_cell(hash); !cells_.empty() && cells_[i].entry != nullptr;
         i = next_cell(i)) {
      if (cells_[i].hash == hash && matches(cells_[i].entry)) {
        return cells_[i].entry;
      }
    }
    return nullptr;
  }

 private:
  struct Cell {
    std::size_t hash = 0;
    OutputNode* entry = nullptr;
  };

  static constexpr std::size_t kFirstSize = 64;  // sizes are powers of two

  [[nodiscard]] std::size_t first_cell(std::size_t hash) const {
    return cells_.empty() ? 0 : hash & (cells_.size() - 1);
  }
  [[nodiscard]] std::size_t next_cell(std::size_t cell) const {
    return (cell + 1) & (cells_.size() - 1);
  }
  [[nodiscard]] std::size_t free_cell(std::size_t hash) const {
    std::size_t cell = first_cell(hash);
    while (cells_[cell].entry != nullptr) {
      cell = next_cell(cell);
    }
    return cell;
  }
  void grow(Arena& arena) {
    const std::span<Cell> old = cells_;
    cells_ = arena.make_array<Cell>(old.empty() ? kFirstSize : 2 * old.size());
    for (const Cell& cell : old) {
      if (cell.entry != nullptr) {
        cells_[free_cell(cell.hash)] = cell;
      }
    }
  }

  std::span<Cell> cells_;
  std::size_t count_ = 0;
};

}  // namespace ocifip

#endif  // OCIFIP_HOST_TREE_KEY_INDEX_H_
