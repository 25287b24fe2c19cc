#include "option_parts.h"

#include <algorithm>
#include <cctype>

namespace ocifip::tool {

CLI::Validator not_empty() {
  return {[](const std::string& argument) {
            return std::string(argument.empty() ? "an empty argument" : "");
          },
          std::string()};
}

bool is_option(std::string_view argument) {
  const auto dashes = std::min(argument.find_first_not_of('-'), argument.size());
  const bool has_letter =
      dashes < argument.size() && std::isalpha(static_cast<unsigned char>(argument[dashes])) != 0;
  return dashes >= 2 || (dashes == 1 && has_letter);
}

CLI::Validator is_value() {
  return {[](const std::string& argument) {
            if (is_option(argument)) return in_quotes(argument) + " is an option, not a value";
            return not_empty()(argument);
          },
          std::string()};
}

void add_libraries(CLI::App* command, HostOptions& host) {
  command->add_option("--plugin", host.plugin, "Mapping plug-in (default: the installed one)")
      ->type_name("PATH")
      ->check(is_value());
  command
      ->add_option("-m,--models", host.models,
                   "Folder of YANG modules (default: the installed one)")
      ->type_name("DIR")
      ->check(is_value());
}

}  // namespace ocifip::tool
