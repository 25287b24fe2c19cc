// A fuzzer's input as a row of choices.
#ifndef FUZZ_CHOICES_H_
#define FUZZ_CHOICES_H_

#include <cstddef>
#include <cstdint>

namespace ocifip::fuzz {

// Each character is a choice, so that an input of printable characters makes every choice: a blank
// is the first, and so is whatever is chosen behind the end of the input.
class Choices {
 public:
  Choices(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  // A number below a bound.
  std::size_t below(std::size_t bound) {
    std::size_t number = digit();
    for (std::size_t range = kDigits; range < bound; range *= kDigits) {
      number = number * kDigits + digit();
    }
    return number % bound;
  }

  // Rarely true: in one case of many.
  bool one_in(std::size_t cases) { return below(cases) == cases - 1; }

  template <typename Row>
  const auto& among(const Row& row) {
    return row[below(std::size(row))];
  }

  [[nodiscard]] bool at_end() const { return next_ == end_; }

 private:
  static constexpr std::size_t kDigits = 95;  // printable characters

  std::size_t digit() {
    return at_end() ? 0 : static_cast<std::uint8_t>(*next_++ - std::uint8_t{' '}) % kDigits;
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

}  // namespace ocifip::fuzz

#endif  // FUZZ_CHOICES_H_
