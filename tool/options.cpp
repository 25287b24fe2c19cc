#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

#include "agent_options.h"
#include "completion.h"
#include "layout.h"
#include "ocifip/contract_version.h"
#include "ocifip/messages.h"
#include "ocifip/nearest_name.h"
#include "option_parts.h"

namespace ocifip::tool {
namespace {

constexpr const char* kDescription =
    "Map OpenConfig interface IP configuration to native models, through the mapping plug-in and "
    "a\n"
    "reference host.";

constexpr const char* kEnding =
    "REQUEST and DATA are files, or - for standard input: JSON with operations as metadata\n"
    "(\"@ip\": {\"ietf-netconf:operation\": \"delete\"}) or NETCONF XML "
    "(nc:operation=\"delete\").\n"
    "PATH is an instance path: /interfaces/interface[name=Eth1]/subinterfaces\n\n"
    "Exit status: 0 done; 1 the mapping or the device refused the request; 2 usage, input that\n"
    "cannot be read or a device file that cannot be written; 3 the plug-in or a model cannot be\n"
    "loaded.";

constexpr const char* kBody =
    "BODY is what the node holds: a file, - for standard input, or JSON or XML itself, which "
    "begins\n"
    "with { [ < or \" or is a number, true, false or null. An object or XML elements are the "
    "children\n"
    "of a container or entry, a JSON value is that of a leaf, an array has the entries of a list.\n"
    "With --op replace the node is replaced, and nothing around it.\n\n";

constexpr const char* kEditExample =
    "Examples:\n"
    "  subinterface='/interfaces/interface[name=Eth1]/subinterfaces/subinterface[index=0]'\n"
    "  ocifip edit --path \"$subinterface/ipv4/config/mtu\" 1400\n"
    "  ocifip edit --format calls --delete \"$subinterface/ipv4\"";

constexpr const char* kApplyExample =
    "The edit is applied atomically. The output is what changed: as json and xml the edit from "
    "the\n"
    "former to the new configuration, as tree a line a change. Without --save the device file "
    "stays\n"
    "as it is.\n\n"
    "Example:\n"
    "  ocifip apply --device device.json --save --format tree request.json";

constexpr const char* kQueryExample =
    "An argument that begins with / and names no file is a PATH.\n\n"
    "Example:\n"
    "  ocifip query --content config \\\n"
    "    \"/interfaces/interface[name=Eth1]/subinterfaces/subinterface[index=0]/ipv4\"";

constexpr const char* kGetExample =
    "An argument that begins with / and names no file is a PATH.\n\n"
    "Example:\n"
    "  ocifip get --device device.json \"/interfaces/interface[name=Eth1]\"";

constexpr const char* kReportExample =
    "DATA is native configuration or state, as a file or - for standard input.\n\n"
    "Example:\n"
    "  ocifip report --content config native.json";

constexpr const char* kCoverageExample =
    "Each leaf of IP on a subinterface, with the result of an edit and of a read, and with the "
    "native\n"
    "data that is read back as the leaf. The results come from requests to the plug-in.\n\n"
    "Example:\n"
    "  ocifip coverage --format tree";

constexpr const char* kCompletionExample =
    "An installation has the script for bash already.\n\n"
    "Example:\n"
    "  source <(ocifip completion bash)";

constexpr const char* kDeviceExample =
    "Without FILE and options: the device file of the built-in example device.\n\n"
    "Example:\n"
    "  ocifip device >device.json\n"
    "  ocifip device device.json";

void add_format(CLI::App* command, Format& format, const Words<Format>& words,
                const std::string& names, const std::string& more) {
  add_choice(command, "-f,--format", format, words, names, "Output format (default: json)" + more);
}

// Whether a command works on a device that the user has to name.
enum class Device { kExample, kNeeded };

// Options of the commands that map something.
void add_common_options(CLI::App* command, CommandLine& line, Device device) {
  const bool is_needed = device == Device::kNeeded;
  command
      ->add_option(
          "-d,--device", line.host.device,
          is_needed ? "Device file (required)" : "Device file (default: a built-in example device)")
      ->type_name("FILE")
      ->check(is_value());
  add_format(command, line.format,
             {{"tree", Format::kTree},
              {"json", Format::kJson},
              {"xml", Format::kXml},
              {"calls", Format::kCalls}},
             "tree|json|xml|calls", "; calls: what the plug-in asked of the framework");
  command->add_flag("-t,--trace", line.host.trace, "Write trace lines to standard error");
  command->add_flag("--unchecked", line.host.unchecked,
                    "Pass nodes and values to the plug-in as they came, without checking them\n"
                    "against the models");
  add_libraries(command, line.host);
  add_choice(command, "-i,--input", line.input,
             Words<Encoding>{{"json", Encoding::kJson}, {"xml", Encoding::kXml}}, "json|xml",
             "Encoding of documents (default: XML when they begin with <)");
}

// The option of the commands that map OpenConfig requests.
void add_only_ip(CLI::App* command, HostOptions& host) {
  command->add_flag("--only-ip", host.only_ip,
                    "Leave out of REQUEST what is not interface IP, with a note");
}

// Options of the commands that show something about the plug-in.
void add_listing_options(CLI::App* command, CommandLine& line) {
  add_format(command, line.format, {{"tree", Format::kTree}, {"json", Format::kJson}}, "tree|json",
             "");
  add_libraries(command, line.host);
}

template <typename Target>
void add_content(CLI::App* command, Target& content) {
  add_choice(command, "-c,--content", content,
             Words<Content>{{"all", Content::kAll}, {"config", Content::kConfig}}, "all|config",
             "Configuration and state, or configuration alone (default: all)");
}

bool is_folder(const std::string& argument) {
  std::error_code error;
  return std::filesystem::is_directory(argument, error);
}

bool is_path(const std::string& argument) {
  std::error_code error;
  const bool is_file = std::filesystem::exists(argument, error) && !is_folder(argument);
  return argument.starts_with('/') && !is_file;
}

void check_edit(const EditCommand& edit) {
  if (edit.document && is_path(*edit.document) && !is_folder(*edit.document)) {
    throw UsageError("no such file: " + in_short(*edit.document) +
                     "; an instance path stands behind --path or --delete");
  }
  if (!edit.document && edit.deletes.empty() && edit.bodies.empty()) {
    throw UsageError("nothing to edit: give a REQUEST, --path PATH BODY or --delete PATH");
  }
  const auto count =
      std::count_if(edit.bodies.begin(), edit.bodies.end(),
                    [](const auto& path_and_body) { return path_and_body.second == "-"; });
  if (count + (edit.document == "-" ? 1 : 0) > 1) {
    throw UsageError("\"-\" is given twice, but standard input can be read only once");
  }
}

void check_apply(const ApplyCommand& apply, const HostOptions& host) {
  if (!host.device) throw UsageError("apply needs a device: give --device FILE");
  check_edit(apply.edit);
}

void check_get(const HostOptions& host) {
  if (!host.device) throw UsageError("get needs a device: give --device FILE");
}

void sort_query_arguments(QueryCommand& query, std::vector<std::string> arguments) {
  for (auto& argument : arguments) {
    if (is_path(argument)) {
      query.paths.push_back(std::move(argument));
    } else if (query.document) {
      throw UsageError("more than one REQUEST: " + *query.document + " and " + argument);
    } else {
      query.document = std::move(argument);
    }
  }
  if (query.document && !query.paths.empty()) {
    throw UsageError("give paths or a REQUEST, not both: " + query.paths.front() + " and " +
                     *query.document);
  }
  if (!query.document && query.paths.empty()) {
    throw UsageError("nothing to query: give paths that begin with / or a REQUEST");
  }
}

using Bodies = decltype(EditCommand::bodies);

// That what stands behind --path is no option.
void check_body(const std::string& path, const std::string& body) {
  if (is_option(path)) {
    throw UsageError("--path has no PATH: " + in_quotes(path) + " is an option");
  }
  if (is_option(body)) {
    throw UsageError("--path " + in_short(path) + " has no body: " + in_quotes(body) +
                     " is an option");
  }
}

void add_edit_options(CLI::App* command, CommandLine& line, EditCommand& edit, Device device) {
  add_choice(command, "-o,--op", edit.operation,
             Words<DefaultOperation>{{"merge", DefaultOperation::kMerge},
                                     {"create", DefaultOperation::kCreate},
                                     {"replace", DefaultOperation::kReplace},
                                     {"none", DefaultOperation::kNone}},
             "merge|create|replace|none",
             "Operation of nodes that carry none themselves (default: merge)");
  command->add_option("-x,--delete", edit.deletes, "Delete a node; may be repeated")
      ->type_name("PATH")
      ->check(is_value())
      ->allow_extra_args(false);
  command
      ->add_option_function<Bodies>(
          "-p,--path",
          [&edit](const Bodies& bodies) {
            for (const auto& [path, body] : bodies) check_body(path, body);
            edit.bodies = bodies;
          },
          "Set what a node holds; may be repeated")
      ->type_name("PATH BODY")
      ->check(not_empty())
      ->allow_extra_args(false);
  command->add_option("REQUEST", edit.document, "Document to map")
      ->type_name("")
      ->check(not_empty());
  add_only_ip(command, line.host);
  add_common_options(command, line, device);
}

void add_edit(CLI::App& program, CommandLine& line, EditCommand& edit) {
  CLI::App* command = program.add_subcommand("edit", "Map an OpenConfig edit to a native edit");
  add_edit_options(command, line, edit, Device::kExample);
  command->footer(std::string(kBody) + kEditExample);
  command->callback([&line, &edit] {
    check_edit(edit);
    line.command = edit;
  });
}

void add_apply(CLI::App& program, CommandLine& line, ApplyCommand& apply) {
  CLI::App* command =
      program.add_subcommand("apply", "Apply an OpenConfig edit to a device atomically");
  add_edit_options(command, line, apply.edit, Device::kNeeded);
  command->add_flag("-s,--save", apply.save, "Write the changed configuration to the device file");
  command->footer(std::string(kBody) + kApplyExample);
  command->callback([&line, &apply] {
    check_apply(apply, line.host);
    line.command = apply;
  });
}

void add_query_options(CLI::App* command, CommandLine& line, QueryCommand& query,
                       std::vector<std::string>& arguments, Device device) {
  add_content(command, query.content);
  command->add_option("PATH|REQUEST", arguments, "Instance paths, or one document")
      ->type_name("")
      ->check(not_empty());
  add_only_ip(command, line.host);
  add_common_options(command, line, device);
}

void add_query(CLI::App& program, CommandLine& line, QueryCommand& query,
               std::vector<std::string>& arguments) {
  CLI::App* command = program.add_subcommand("query", "Map an OpenConfig read to native queries");
  add_query_options(command, line, query, arguments, Device::kExample);
  command->footer(kQueryExample);
  command->callback([&line, &query, &arguments] {
    sort_query_arguments(query, arguments);
    line.command = query;
  });
}

void add_get(CLI::App& program, CommandLine& line, QueryCommand& query,
             std::vector<std::string>& arguments) {
  CLI::App* command = program.add_subcommand("get", "Read a device's data in OpenConfig terms");
  add_query_options(command, line, query, arguments, Device::kNeeded);
  command->footer(kGetExample);
  command->callback([&line, &query, &arguments] {
    check_get(line.host);
    sort_query_arguments(query, arguments);
    query.is_answered = true;
    line.command = query;
  });
}

void add_report(CLI::App& program, CommandLine& line, ReportCommand& report) {
  CLI::App* command = program.add_subcommand("report", "Map native data to OpenConfig");
  add_content(command, report.content);
  command->add_option("DATA", report.data, "Native data to map")
      ->type_name("")
      ->check(not_empty())
      ->required();
  add_common_options(command, line, Device::kExample);
  command->footer(kReportExample);
  command->callback([&line, &report] { line.command = report; });
}

void add_registrations(CLI::App& program, CommandLine& line) {
  CLI::App* command = program.add_subcommand("registrations", "List the plug-in's registrations");
  add_listing_options(command, line);
  command->callback([&line] { line.command = RegistrationsCommand(); });
}

void add_coverage(CLI::App& program, CommandLine& line) {
  CLI::App* command = program.add_subcommand(
      "coverage", "List which leaves are mapped, ignored or refused, in both directions");
  add_listing_options(command, line);
  command->footer(kCoverageExample);
  command->callback([&line] { line.command = CoverageCommand(); });
}

// What `ocifip device` is given.
struct DeviceArguments {
  bool schema = false;
  bool check = false;
};

DeviceCommand device_command(const DeviceArguments& device, const HostOptions& host) {
  using Action = DeviceCommand::Action;
  if (device.schema && (device.check || host.device)) {
    throw UsageError("--schema goes with neither --check nor FILE");
  }
  if (device.check && !host.device) throw UsageError("nothing to check: give FILE");
  if (device.schema) return {Action::kShowSchema};
  return {host.device ? Action::kCheck : Action::kShowExample};
}

void add_device(CLI::App& program, CommandLine& line, DeviceArguments& device) {
  CLI::App* command =
      program.add_subcommand("device", "Check a device file, or print the example or the schema");
  command->add_option("FILE", line.host.device, "Device file to check")
      ->type_name("")
      ->check(not_empty());
  command->add_flag("--schema", device.schema, "Print the JSON schema of device files");
  command->add_flag("--check", device.check, "Check FILE, as without the option");
  add_libraries(command, line.host);
  command->footer(kDeviceExample);
  command->callback([&line, &device] { line.command = device_command(device, line.host); });
}

std::vector<std::string> command_names(const CLI::App& program) {
  std::vector<std::string> names;
  for (const auto* command : program.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

void check_command(const CLI::App& program, const std::string& name) {
  const auto known = command_names(program);
  if (std::find(known.begin(), known.end(), name) != known.end()) return;
  throw UsageError("unknown command " + in_quotes(name) + did_you_mean(name, known));
}

// What `ocifip help` and `ocifip completion` are asked for.
struct InformationArguments {
  std::string command;
  std::string shell;
};

Information help(const CLI::App& program, const InformationArguments& asked) {
  if (asked.command.empty()) return {program.help("", CLI::AppFormatMode::Sub)};
  check_command(program, asked.command);
  return {program.get_subcommand(asked.command)->help(program.get_name())};
}

void add_help(CLI::App& program, CommandLine& line, InformationArguments& asked) {
  CLI::App* command = program.add_subcommand("help", "Show the help of the program or a command");
  command->add_option("COMMAND", asked.command, "Command to explain")
      ->type_name("")
      ->check(not_empty());
  command->callback([&program, &line, &asked] { line.command = help(program, asked); });
}

void add_completion(CLI::App& program, CommandLine& line, InformationArguments& asked) {
  CLI::App* command =
      program.add_subcommand("completion", "Print a script that completes command lines");
  command->add_option("SHELL", asked.shell, "Shell that the script is for")
      ->type_name("bash")
      ->required()
      ->check(CLI::IsMember({"bash"}).description(""));
  command->footer(kCompletionExample);
  command->callback([&program, &line] { line.command = Information{bash_completion(program)}; });
}

// The arguments that the parser made nothing of: those before the command, or behind it.
std::string unknown_option(const CLI::App& asked, const std::string& argument) {
  const auto name = argument.substr(0, argument.find('='));
  std::vector<std::string> known;
  for (const auto* each : asked.get_options()) {
    for (const auto& long_name : each->get_lnames()) known.push_back("--" + long_name);
  }
  return "unknown option " + in_quotes(name) + did_you_mean(name, known);
}

std::string explain_no_command(const CLI::App& program) {
  const auto extras = program.remaining();
  if (extras.empty()) return "a command is missing";
  const auto reason = unknown_option(program, extras.front());
  return reason.ends_with('?') ? reason
                               : "a command is missing before " + in_quotes(extras.front());
}

std::string explain_extras(const CLI::App& program, const CLI::App& asked) {
  const auto misplaced = program.remaining();
  if (!misplaced.empty()) return "the command comes before " + in_quotes(misplaced.front());
  const auto extras = asked.remaining();
  const auto option = std::find_if(extras.begin(), extras.end(),
                                   [](const auto& extra) { return extra.starts_with('-'); });
  if (option == extras.end()) return "one argument too many: " + in_quotes(extras.front());
  return unknown_option(asked, *option);
}

// An option without its value; empty when it is something else.
std::string explain_mismatch(const CLI::App& asked, const std::string& reason) {
  for (const auto* option : asked.get_options()) {
    if (!reason.starts_with(option->get_name() + ": ")) continue;
    const bool is_missing = reason.ends_with(" missing");
    return option->get_name() +
           (is_missing ? " needs " + option->get_type_name() : " may be given once");
  }
  return {};
}

std::string explain_error(const CLI::App& program, const CLI::App& asked,
                          const CLI::ParseError& error) {
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    return explain_extras(program, asked);
  }
  if (&asked == &program && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    return explain_no_command(program);
  }
  const auto mismatch = dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr
                            ? std::string()
                            : explain_mismatch(asked, error.what());
  return mismatch.empty() ? error.what() : mismatch;
}

// What the parser stopped at: help and version are no errors.
Information explain(const CLI::App& program, const CLI::ParseError& stop) {
  const auto commands = program.get_subcommands();
  const CLI::App& asked = commands.empty() ? program : *commands.front();
  if (stop.get_exit_code() != 0) throw UsageError(explain_error(program, asked, stop));
  const bool is_help = dynamic_cast<const CLI::CallForHelp*>(&stop) != nullptr;
  return {is_help ? program.help() : std::string(stop.what()) + "\n"};
}

// An error of the command line, with what to read next.
UsageError with_help(const CLI::App& program, const std::string& reason) {
  const auto asked = program.get_subcommands();
  const bool is_of_command = !asked.empty() && asked.front()->get_name() != "help";
  return UsageError(reason + "\nTry 'ocifip" +
                    (is_of_command ? ' ' + asked.front()->get_name() : std::string()) +
                    " --help' for more information.");
}

// A first argument that is no option is a command.
void check_first_argument(const CLI::App& program, int count, const char* const* arguments) {
  if (count < 2 || std::string_view(arguments[1]).starts_with('-')) return;
  check_command(program, arguments[1]);
}

void parse(CLI::App& program, CommandLine& line, int count, const char* const* arguments) {
  check_first_argument(program, count, arguments);
  try {
    program.parse(count, arguments);
  } catch (const CLI::ParseError& stop) {
    line.command = explain(program, stop);
  }
}

// What the commands take; the line gets that of the command that is called.
struct Arguments {
  EditCommand edit;
  ApplyCommand apply;
  QueryCommand query;
  std::vector<std::string> query_arguments;
  ReportCommand report;
  DeviceArguments device;
  ServeCommand serve;
  NetconfCommand netconf;
  InformationArguments asked;
};

void describe(CLI::App& program) {
  program.set_version_flag("-V,--version",
                           "ocifip " OCIFIP_VERSION " (contract " + contract_version() + ")");
  program.footer(kEnding);
  program.require_subcommand(1);
}

void add_commands(CLI::App& program, CommandLine& line, Arguments& given) {
  add_edit(program, line, given.edit);
  add_apply(program, line, given.apply);
  add_query(program, line, given.query, given.query_arguments);
  add_get(program, line, given.query, given.query_arguments);
  add_report(program, line, given.report);
  add_registrations(program, line);
  add_coverage(program, line);
  add_device(program, line, given.device);
  add_serve(program, line, given.serve);
  add_netconf(program, line, given.netconf);
  add_help(program, line, given.asked);
  add_completion(program, line, given.asked);
}

}  // namespace

CommandLine read_command_line(int count, const char* const* arguments) {
  CommandLine line;
  line.host.plugin = default_plugin();
  line.host.models = default_models();
  Arguments given;
  CLI::App program(kDescription, "ocifip");
  describe(program);
  add_commands(program, line, given);
  try {
    parse(program, line, count, arguments);
  } catch (const UsageError& error) {
    throw with_help(program, error.what());
  }
  return line;
}

}  // namespace ocifip::tool
