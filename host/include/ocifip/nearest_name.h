// Which of a set of names was meant by one that is not among them.
#ifndef OCIFIP_NEAREST_NAME_H_
#define OCIFIP_NEAREST_NAME_H_

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ocifip {

// Number of characters to insert, to remove, to exchange or to swap with the next, that make one
// text of the other; no character is touched twice.
inline std::size_t edit_distance(std::string_view from, std::string_view to) {
  // Distances between the start of `from` up to a character, the one before and the one before
  // that, and every start of `to`.
  std::vector<std::size_t> before(to.size() + 1);
  std::vector<std::size_t> last(to.size() + 1);
  std::vector<std::size_t> now(to.size() + 1);
  for (std::size_t column = 0; column <= to.size(); ++column) now[column] = column;
  for (std::size_t row = 1; row <= from.size(); ++row) {
    before = std::exchange(last, std::exchange(now, before));
    now[0] = row;
    for (std::size_t column = 1; column <= to.size(); ++column) {
      const std::size_t exchanged = from[row - 1] == to[column - 1] ? 0 : 1;
      now[column] = std::min({last[column] + 1, now[column - 1] + 1, last[column - 1] + exchanged});
      const bool swaps = row > 1 && column > 1 && from[row - 1] == to[column - 2] &&
                         from[row - 2] == to[column - 1];
      if (swaps) now[column] = std::min(now[column], before[column - 2] + 1);
    }
  }
  return now[to.size()];
}

// The name that is nearest to a text, the first of several; "" when none is near: one character in
// three may differ, of shorter texts one, but not all.
inline std::string nearest_name(std::string_view text, const std::vector<std::string>& names) {
  // Comparing takes the product of the lengths; no name is that long.
  constexpr std::size_t kLongestText = 100;
  if (text.size() < 2 || text.size() > kLongestText) return {};
  std::string nearest;
  std::size_t least = std::max<std::size_t>(1, text.size() / 3) + 1;
  for (const auto& name : names) {
    const std::size_t distance = edit_distance(text, name);
    if (distance >= least || name.size() > kLongestText) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

// `, did you mean "NAME"?` for the end of a message about a text; "" when no name is near.
inline std::string did_you_mean(std::string_view text, const std::vector<std::string>& names) {
  const std::string nearest = nearest_name(text, names);
  return nearest.empty() ? nearest : ", did you mean \"" + nearest + "\"?";
}

}  // namespace ocifip

#endif  // OCIFIP_NEAREST_NAME_H_
