// The parameters of an operation, as its function asks for them.
#ifndef OCIFIP_AGENT_PARAMETERS_H_
#define OCIFIP_AGENT_PARAMETERS_H_

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "xml.h"

namespace ocifip::agent {

// All of them throw OperationError for what is not as it must be. Parameters are in the namespace
// of the element that they are in.
class Parameters {
 public:
  // `of`: the operation's element, or a parameter that has parameters itself. It outlives this.
  explicit Parameters(const xmlNode* of);

  // The element with a name; null when there is none. One is refused that comes twice.
  const xmlNode* find(std::string_view name);
  const xmlNode* need(std::string_view name);
  std::optional<std::string> text(std::string_view name);
  std::string needed_text(std::string_view name);
  // A text that is one of these.
  std::optional<std::string> choice(std::string_view name,
                                    std::initializer_list<std::string_view> words);
  // A number from 1 up.
  std::optional<std::uint32_t> number(std::string_view name);
  // Whether there is an element, which is empty.
  bool flag(std::string_view name);

  // Refuses what was not asked for.
  void finish() const;

 private:
  const xmlNode* of_;
  std::vector<const xmlNode*> left_;
};

}  // namespace ocifip::agent

#endif  // OCIFIP_AGENT_PARAMETERS_H_
