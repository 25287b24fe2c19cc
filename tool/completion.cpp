#include "completion.h"

#include <algorithm>
#include <vector>

namespace ocifip::tool {
namespace {

using Words = std::vector<std::string>;

std::string joined(const Words& words, const std::string& separator) {
  std::string text;
  for (const auto& word : words) text.append(text.empty() ? "" : separator).append(word);
  return text;
}

// The names of an option as they are written, "-f" and "--format".
Words names_of(const CLI::Option& option) {
  Words names;
  for (const auto& name : option.get_snames()) names.push_back('-' + name);
  for (const auto& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

Words options_of(const CLI::App& command) {
  Words all;
  for (const auto* option : command.get_options()) {
    const auto names = names_of(*option);
    all.insert(all.end(), names.begin(), names.end());
  }
  return all;
}

Words commands_of(const CLI::App& program) {
  Words names;
  for (const auto* command : program.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

// What bash's compgen is told to complete a value with. Words are in small letters.
std::string values_of(const std::string& type) {
  if (type == "DIR") return "-d";
  if (type.empty() || type.find_first_not_of("abcdefghijklmnopqrstuvwxyz|") != std::string::npos) {
    return "-f";
  }
  std::string words = type;
  std::replace(words.begin(), words.end(), '|', ' ');
  return "-W '" + words + "'";
}

// Cases for what stands behind an option of a command.
std::string value_cases(const CLI::App& command) {
  std::string cases;
  for (const auto* option : command.get_options()) {
    const auto names = names_of(*option);
    if (names.empty() || option->get_type_size_max() == 0) continue;
    Words patterns;
    for (const auto& name : names) patterns.push_back(command.get_name() + ' ' + name);
    cases += "    '" + joined(patterns, "' | '") + "') _ocifip_reply " +
             values_of(option->get_type_name()) + "; return ;;\n";
  }
  return cases;
}

// What a command takes beside its options; "" for nothing that can be completed.
std::string arguments_of(const CLI::App& command) {
  for (const auto* option : command.get_options()) {
    if (option->get_positional()) return values_of(option->get_type_name());
  }
  return "-W ''";
}

}  // namespace

std::string bash_completion(const CLI::App& program) {
  std::string values;
  std::string options;
  std::string arguments;
  for (const auto* command : program.get_subcommands({})) {
    const auto& name = command->get_name();
    values += value_cases(*command);
    options +=
        "      " + name + ") _ocifip_reply -W '" + joined(options_of(*command), " ") + "' ;;\n";
    const bool is_help = name == "help";
    arguments +=
        "      " + name + ") _ocifip_reply " +
        (is_help ? "-W '" + joined(commands_of(program), " ") + "'" : arguments_of(*command)) +
        " ;;\n";
  }
  return "# Completion of ocifip for bash; made by `ocifip completion bash`.\n"
         "_ocifip_reply() {\n"
         "  mapfile -t COMPREPLY < <(compgen \"$@\" -- \"${COMP_WORDS[COMP_CWORD]}\")\n"
         "}\n"
         "_ocifip() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]}\n"
         "  if ((COMP_CWORD == 1)); then\n"
         "    _ocifip_reply -W '" +
         joined(commands_of(program), " ") + ' ' + joined(options_of(program), " ") +
         "'\n"
         "    return\n"
         "  fi\n"
         "  case \"$command ${COMP_WORDS[COMP_CWORD - 1]}\" in\n" +
         values +
         "  esac\n"
         "  if [[ $word == -* ]]; then\n"
         "    case $command in\n" +
         options +
         "    esac\n"
         "  else\n"
         "    case $command in\n" +
         arguments +
         "    esac\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _ocifip ocifip\n";
}

}  // namespace ocifip::tool
