#include "completion.h"

#include <algorithm>
#include <vector>

namespace ocifip::tool {
namespace {

using Words = std::vector<std::string>;
using Commands = std::vector<const CLI::App*>;

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
    if (names.empty() || option->get_items_expected_max() == 0) continue;
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

// A case of bash for a command, which replies with what compgen makes of `how`.
std::string reply_case(const CLI::App& command, const std::string& how) {
  return "      " + command.get_name() + ") _ocifip_reply " + how + " ;;\n";
}

std::string word_list(const Words& words) { return "-W '" + joined(words, " ") + '\''; }

std::string all_value_cases(const Commands& commands) {
  std::string cases;
  for (const auto* command : commands) cases += value_cases(*command);
  return cases;
}

std::string option_cases(const Commands& commands) {
  std::string cases;
  for (const auto* command : commands) {
    cases += reply_case(*command, word_list(options_of(*command)));
  }
  return cases;
}

// `help` takes the name of a command.
std::string argument_cases(const CLI::App& program, const Commands& commands) {
  std::string cases;
  for (const auto* command : commands) {
    const bool is_help = command->get_name() == "help";
    cases +=
        reply_case(*command, is_help ? word_list(commands_of(program)) : arguments_of(*command));
  }
  return cases;
}

// Where bash begins a word at "=", "--format=j" comes as three words, and where it does not, as
// one. What is completed is then the value, or the whole word.
constexpr const char* kFunctions =
    "# Completion of ocifip for bash; made by `ocifip completion bash`.\n"
    "_ocifip_reply() {\n"
    "  mapfile -t COMPREPLY < <(compgen \"$@\" -P \"$prefix\" -- \"$word\")\n"
    "}\n"
    "_ocifip() {\n"
    "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
    "  local command=${COMP_WORDS[1]} prefix=\n"
    "  COMPREPLY=()\n"
    "  if [[ $word == = ]]; then\n"
    "    word=\n"
    "  elif [[ $before == = ]]; then\n"
    "    before=${COMP_WORDS[COMP_CWORD - 2]}\n"
    "  elif [[ $word == --*=* ]]; then\n"
    "    before=${word%%=*} prefix=${word%%=*}= word=${word#*=}\n"
    "  fi\n";

}  // namespace

std::string bash_completion(const CLI::App& program) {
  const auto commands = program.get_subcommands({});
  Words first = commands_of(program);
  for (const auto& option : options_of(program)) first.push_back(option);
  return kFunctions +
         ("  if ((COMP_CWORD == 1)); then\n"
          "    _ocifip_reply " +
          word_list(first)) +
         "\n"
         "    return\n"
         "  fi\n"
         "  case \"$command $before\" in\n" +
         all_value_cases(commands) +
         "  esac\n"
         "  if [[ $word == -* ]]; then\n"
         "    case $command in\n" +
         option_cases(commands) +
         "    esac\n"
         "  else\n"
         "    case $command in\n" +
         argument_cases(program, commands) +
         "    esac\n"
         "  fi\n"
         "}\n"
         "complete -o filenames -F _ocifip ocifip\n";
}

}  // namespace ocifip::tool
