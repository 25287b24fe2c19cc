// A file descriptor that is closed by its owner.
#ifndef OCIFIP_AGENT_DESCRIPTOR_H_
#define OCIFIP_AGENT_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace ocifip::agent {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_DESCRIPTOR_H_
