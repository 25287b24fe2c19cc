// What the options of several commands are made of.
#ifndef OCIFIP_TOOL_OPTION_PARTS_H_
#define OCIFIP_TOOL_OPTION_PARTS_H_

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "ocifip/host.h"
#include "ocifip/messages.h"
#include "ocifip/nearest_name.h"

namespace ocifip::tool {

// Of options and arguments that are names: an empty one is a mistake, as of a variable not set.
CLI::Validator not_empty();

// "--format" and "-f"; neither "-" nor a negative number.
bool is_option(std::string_view argument);

// Of an option's value: an option where it would stand means that it was forgotten.
CLI::Validator is_value();

// The options that say where the plug-in and the models are.
void add_libraries(CLI::App* command, HostOptions& host);

template <typename Value>
using Words = std::map<std::string, Value>;

// An option that takes one of a set of words. `names` lists them for the help.
template <typename Target, typename Value>
void add_choice(CLI::App* command, const std::string& option, Target& target,
                const Words<Value>& words, const std::string& names,
                const std::string& description) {
  command
      ->add_option_function<std::string>(
          option, [&target, words](const std::string& word) { target = words.at(word); },
          description)
      ->type_name(names)
      ->check(CLI::Validator(
          [words, names](const std::string& word) {
            if (words.contains(word)) return std::string();
            std::vector<std::string> known;
            for (const auto& [name, value] : words) known.push_back(name);
            return in_quotes(word) + " is none of " + names + did_you_mean(word, known);
          },
          std::string()));
}

}  // namespace ocifip::tool

#endif  // OCIFIP_TOOL_OPTION_PARTS_H_
