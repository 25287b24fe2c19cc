#include "options.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
#include <system_error>

#include "layout.h"

namespace ocifip::tool {
namespace {

constexpr const char* kDescription =
    "Maps OpenConfig interface IP configuration to the native models, through the mapping\n"
    "plug-in and a reference host.";

constexpr const char* kEnding =
    "REQUEST and DATA are files, or - for standard input: JSON with operations as metadata\n"
    "(\"@ip\": {\"ietf-netconf:operation\": \"delete\"}) or NETCONF XML "
    "(nc:operation=\"delete\").\n"
    "PATH is an instance path: /interfaces/interface[name='Eth1']/subinterfaces\n\n"
    "Exit status: 0 done; 1 the mapping or the device refused the request; 2 usage, input that\n"
    "cannot be read or a device file that cannot be written; 3 the plug-in or a model cannot be\n"
    "loaded.";

constexpr const char* kEditExample =
    "Example:\n"
    "  ocifip edit --format calls \\\n"
    "    --delete "
    "\"/interfaces/interface[name='Eth1']/subinterfaces/subinterface[index='0']/ipv4\"";

constexpr const char* kApplyExample =
    "All of the edit is applied, or nothing. The output is what changed: as json and xml the edit\n"
    "that makes the new configuration of the former one, as tree a line a change. Without --save\n"
    "the device file stays as it is.\n\n"
    "Example:\n"
    "  ocifip apply --device device.json --save --format tree request.json";

constexpr const char* kQueryExample =
    "An argument that begins with / and names no file is a PATH.\n\n"
    "Example:\n"
    "  ocifip query --content config \\\n"
    "    \"/interfaces/interface[name='Eth1']/subinterfaces/subinterface[index='0']/ipv4\"";

constexpr const char* kGetExample =
    "An argument that begins with / and names no file is a PATH.\n\n"
    "Example:\n"
    "  ocifip get --device device.json \"/interfaces/interface[name='Eth1']\"";

constexpr const char* kReportExample =
    "DATA is native configuration or state, as a file or - for standard input.\n\n"
    "Example:\n"
    "  ocifip report --content config native.json";

constexpr const char* kCoverageExample =
    "A line for each leaf of IP on a subinterface: what becomes of an edit and of a read of it, "
    "and\n"
    "which native data is read back as it. Found by making requests of the plug-in, on devices "
    "made\n"
    "up for it.\n\n"
    "Example:\n"
    "  ocifip coverage --format tree";

constexpr const char* kDeviceExample =
    "Without FILE and options: the device file of the built-in example device.\n\n"
    "Example:\n"
    "  ocifip device >device.json\n"
    "  ocifip device device.json";

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
            return words.contains(word) ? std::string() : "'" + word + "' is none of " + names;
          },
          std::string()));
}

void add_format(CLI::App* command, Format& format, const Words<Format>& words,
                const std::string& names, const std::string& more) {
  add_choice(command, "--format", format, words, names, "Output format (default: json)" + more);
}

void add_libraries(CLI::App* command, HostOptions& host) {
  command->add_option("--plugin", host.plugin, "Mapping plug-in to load instead of the own")
      ->type_name("PATH");
  command->add_option("--models", host.models, "Folder of YANG modules instead of the own")
      ->type_name("DIR");
}

// Options of the commands that map something.
void add_common_options(CLI::App* command, CommandLine& line) {
  command->add_option("--device", line.host.device, "Device file (default: an example device)")
      ->type_name("FILE");
  add_format(command, line.format,
             {{"tree", Format::kTree},
              {"json", Format::kJson},
              {"xml", Format::kXml},
              {"calls", Format::kCalls}},
             "tree|json|xml|calls", "; calls: what the plug-in asked of the framework");
  command->add_flag("--trace", line.host.trace, "Trace lines on standard error");
  add_libraries(command, line.host);
  add_choice(command, "--input", line.input,
             Words<Encoding>{{"json", Encoding::kJson}, {"xml", Encoding::kXml}}, "json|xml",
             "Encoding of REQUEST or DATA (default: XML when it begins with <)");
}

// Options of the commands that show something about the plug-in.
void add_listing_options(CLI::App* command, CommandLine& line) {
  add_format(command, line.format, {{"tree", Format::kTree}, {"json", Format::kJson}}, "tree|json",
             "");
  add_libraries(command, line.host);
}

template <typename Target>
void add_content(CLI::App* command, Target& content) {
  add_choice(command, "--content", content,
             Words<Content>{{"all", Content::kAll}, {"config", Content::kConfig}}, "all|config",
             "Configuration and state, or configuration alone (default: all)");
}

void add_edit_options(CLI::App* command, CommandLine& line, EditCommand& edit) {
  add_choice(command, "--op", edit.operation,
             Words<DefaultOperation>{{"merge", DefaultOperation::kMerge},
                                     {"create", DefaultOperation::kCreate},
                                     {"replace", DefaultOperation::kReplace},
                                     {"none", DefaultOperation::kNone}},
             "merge|create|replace|none",
             "Operation of nodes that carry none themselves (default: merge)");
  command->add_option("--delete", edit.deletes, "Delete a node; may be given several times")
      ->type_name("PATH")
      ->allow_extra_args(false);
  command->add_option("--path", edit.bodies, "Set what a node holds; may be given several times")
      ->type_name("PATH BODY")
      ->allow_extra_args(false);
  command->add_option("REQUEST", edit.document, "Document to map")->type_name("");
  add_common_options(command, line);
}

CLI::App* add_edit(CLI::App& program, CommandLine& line, EditCommand& edit) {
  CLI::App* command = program.add_subcommand("edit", "An OpenConfig edit becomes a native edit");
  add_edit_options(command, line, edit);
  command->footer(kEditExample);
  return command;
}

CLI::App* add_apply(CLI::App& program, CommandLine& line, ApplyCommand& apply) {
  CLI::App* command = program.add_subcommand(
      "apply", "An OpenConfig edit is mapped and applied to the device's native configuration");
  add_edit_options(command, line, apply.edit);
  command->add_flag("--save", apply.save, "Write the changed configuration to the device file");
  command->footer(kApplyExample);
  return command;
}

void add_query_options(CLI::App* command, CommandLine& line, QueryCommand& query,
                       std::vector<std::string>& arguments) {
  add_content(command, query.content);
  command->add_option("PATH|REQUEST", arguments, "Instance paths, or one document")->type_name("");
  add_common_options(command, line);
}

CLI::App* add_query(CLI::App& program, CommandLine& line, QueryCommand& query,
                    std::vector<std::string>& arguments) {
  CLI::App* command = program.add_subcommand("query", "An OpenConfig read becomes native queries");
  add_query_options(command, line, query, arguments);
  command->footer(kQueryExample);
  return command;
}

CLI::App* add_get(CLI::App& program, CommandLine& line, QueryCommand& query,
                  std::vector<std::string>& arguments) {
  CLI::App* command = program.add_subcommand(
      "get", "An OpenConfig read is mapped and answered from the device's native data");
  add_query_options(command, line, query, arguments);
  command->footer(kGetExample);
  return command;
}

CLI::App* add_report(CLI::App& program, CommandLine& line, ReportCommand& report) {
  CLI::App* command = program.add_subcommand("report", "Native data becomes OpenConfig");
  add_content(command, report.content);
  command->add_option("DATA", report.data, "Native data to map")->type_name("")->required();
  add_common_options(command, line);
  command->footer(kReportExample);
  return command;
}

CLI::App* add_registrations(CLI::App& program, CommandLine& line) {
  CLI::App* command =
      program.add_subcommand("registrations", "The registration records of the plug-in");
  add_listing_options(command, line);
  return command;
}

CLI::App* add_coverage(CLI::App& program, CommandLine& line) {
  CLI::App* command = program.add_subcommand(
      "coverage", "Which leaves are mapped, ignored or refused, in both directions");
  add_listing_options(command, line);
  command->footer(kCoverageExample);
  return command;
}

// What `ocifip device` is given.
struct DeviceArguments {
  bool schema = false;
  bool check = false;
};

CLI::App* add_device(CLI::App& program, CommandLine& line, DeviceArguments& device) {
  CLI::App* command =
      program.add_subcommand("device", "Check a device file, or print the example or the schema");
  command->add_option("FILE", line.host.device, "Device file to check")->type_name("");
  command->add_flag("--schema", device.schema, "Print the JSON schema of device files");
  command->add_flag("--check", device.check, "Check FILE, as without the option");
  add_libraries(command, line.host);
  command->footer(kDeviceExample);
  return command;
}

DeviceCommand device_command(const DeviceArguments& device, const HostOptions& host) {
  using Action = DeviceCommand::Action;
  if (device.schema && (device.check || host.device)) {
    throw UsageError("--schema goes with neither --check nor FILE");
  }
  if (device.check && !host.device) throw UsageError("nothing to check: give FILE");
  if (device.schema) return {Action::kShowSchema};
  return {host.device ? Action::kCheck : Action::kShowExample};
}

void check_edit(const EditCommand& edit) {
  if (!edit.document && edit.deletes.empty() && edit.bodies.empty()) {
    throw UsageError("nothing to edit: give a REQUEST, --path PATH BODY or --delete PATH");
  }
}

void check_apply(const ApplyCommand& apply, const HostOptions& host) {
  if (!host.device) throw UsageError("nothing to apply to: give --device FILE");
  check_edit(apply.edit);
}

bool is_path(const std::string& argument) {
  std::error_code error;
  const bool is_file =
      std::filesystem::exists(argument, error) && !std::filesystem::is_directory(argument, error);
  return argument.starts_with('/') && !is_file;
}

void check_get(const HostOptions& host) {
  if (!host.device) throw UsageError("nothing to get from: give --device FILE");
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

// What the parser stopped at: help and version are no errors.
Information explain(const CLI::App& program, const CLI::ParseError& stop) {
  const auto commands = program.get_subcommands();
  const CLI::App& asked = commands.empty() ? program : *commands.front();
  if (stop.get_exit_code() != 0) {
    const std::string name = commands.empty() ? "ocifip" : "ocifip " + asked.get_name();
    throw UsageError(std::string(stop.what()) + "\nTry '" + name + " --help'.");
  }
  const bool is_help = dynamic_cast<const CLI::CallForHelp*>(&stop) != nullptr;
  return {is_help ? program.help() : std::string(stop.what()) + "\n"};
}

}  // namespace

CommandLine read_command_line(int count, const char* const* arguments) {
  CommandLine line;
  EditCommand edit;
  ApplyCommand apply;
  QueryCommand query;
  ReportCommand report;
  std::vector<std::string> query_arguments;
  CLI::App program(kDescription, "ocifip");
  program.set_version_flag("--version", "ocifip " OCIFIP_VERSION);
  program.footer(kEnding);
  program.require_subcommand(1);
  const CLI::App* edit_command = add_edit(program, line, edit);
  const CLI::App* apply_command = add_apply(program, line, apply);
  add_query(program, line, query, query_arguments);
  const CLI::App* get_command = add_get(program, line, query, query_arguments);
  const CLI::App* report_command = add_report(program, line, report);
  const CLI::App* registrations_command = add_registrations(program, line);
  const CLI::App* coverage_command = add_coverage(program, line);
  DeviceArguments device;
  const CLI::App* device_subcommand = add_device(program, line, device);
  try {
    program.parse(count, arguments);
  } catch (const CLI::ParseError& stop) {
    line.command = explain(program, stop);
    return line;
  }
  if (line.host.plugin.empty()) line.host.plugin = default_plugin();
  if (line.host.models.empty()) line.host.models = default_models();
  if (edit_command->parsed()) {
    check_edit(edit);
    line.command = std::move(edit);
  } else if (apply_command->parsed()) {
    check_apply(apply, line.host);
    line.command = std::move(apply);
  } else if (report_command->parsed()) {
    line.command = std::move(report);
  } else if (registrations_command->parsed()) {
    line.command = RegistrationsCommand();
  } else if (coverage_command->parsed()) {
    line.command = CoverageCommand();
  } else if (device_subcommand->parsed()) {
    line.command = device_command(device, line.host);
  } else {
    query.is_answered = get_command->parsed();
    if (query.is_answered) check_get(line.host);
    sort_query_arguments(query, std::move(query_arguments));
    line.command = std::move(query);
  }
  return line;
}

}  // namespace ocifip::tool
