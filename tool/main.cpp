// The `ocifip` command: maps requests through the plug-in and the reference host.
#include <exception>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "agent_commands.h"
#include "ocifip/device.h"
#include "ocifip/host.h"
#include "options.h"
#include "progress_line.h"
#include "streams.h"

namespace ocifip::tool {
namespace {

enum Status : int { kDone = 0, kRefused = 1, kUsage = 2, kNotLoaded = 3 };

std::optional<Source> read_document(const std::optional<std::string>& file,
                                    std::optional<Encoding> encoding) {
  if (!file) return std::nullopt;
  return read_source(*file, encoding);
}

// Shows an outcome: the text asked for, then remarks and the refusal.
Status show(const Outcome& outcome) {
  write_output(outcome.text);
  for (const auto& note : outcome.notes) complain(colored("note:", Color::kYellow) + " " + note);
  if (!outcome.refusal) return kDone;
  write_error(colored("refused:", Color::kRed) + " " + outcome.refusal->text());
  return kRefused;
}

EditRequest read_edit(const CommandLine& line, const EditCommand& command) {
  EditRequest request = {read_document(command.document, line.input), command.deletes,
                         command.operation};
  for (const auto& [path, body] : command.bodies) {
    request.bodies.push_back({path, read_body(path, body, line.input)});
  }
  return request;
}

// Calls a function with a host, and with the line that shows what that is at for as long as it
// takes.
template <typename Work>
auto with_host(const CommandLine& line, const Work& work) {
  Progress progress;
  ProgressLine shown(progress);
  HostOptions options = line.host;
  options.progress = &progress;
  Host host(options);
  progress.begin("reading the request");
  if constexpr (std::is_invocable_v<Work, Host&, ProgressLine&>) {
    return work(host, shown);
  } else {
    return work(host);
  }
}

Status run(const CommandLine& line, const EditCommand& command) {
  return show(with_host(
      line, [&](Host& host) { return host.edit(read_edit(line, command), line.format); }));
}

// What changed is written before it is saved: a change that nobody is told of is none.
Status run(const CommandLine& line, const ApplyCommand& command) {
  return show(with_host(line, [&](Host& host, ProgressLine& shown) {
    bool is_written = false;
    ApplyRequest request = {read_edit(line, command.edit), command.save};
    request.before_saving = [&](const Outcome& outcome) {
      shown.end();
      write_before_saving(outcome.text);
      is_written = true;
    };
    Outcome outcome = host.apply(request, line.format);
    if (is_written) outcome.text.clear();
    return outcome;
  }));
}

Status run(const CommandLine& line, const QueryCommand& command) {
  return show(with_host(line, [&](Host& host) {
    const QueryRequest request = {read_document(command.document, line.input), command.paths,
                                  command.content};
    return command.is_answered ? host.get(request, line.format) : host.query(request, line.format);
  }));
}

Status run(const CommandLine& line, const ReportCommand& command) {
  return show(with_host(line, [&](Host& host) {
    return host.report({read_source(command.data, line.input), command.content}, line.format);
  }));
}

Status run(const CommandLine& line, const RegistrationsCommand&) {
  write_output(with_host(line, [&](Host& host) { return host.registrations(line.format); }));
  return kDone;
}

Status run(const CommandLine& line, const CoverageCommand&) {
  write_output(with_host(line, [&](Host& host) { return host.coverage().text(line.format); }));
  return kDone;
}

Status run(const CommandLine& line, const DeviceCommand& command) {
  using Action = DeviceCommand::Action;
  if (command.action == Action::kCheck) {
    with_host(line, [](const Host& host) {
      host.check_device();
      return kDone;
    });
    write_output(*line.host.device + ": is a sound device file\n");
  } else {
    write_output(command.action == Action::kShowSchema ? device_schema() : example_device_file());
  }
  return kDone;
}

Status run(const CommandLine& line, const ServeCommand& command) {
  serve(line, command);
  return kDone;
}

Status run(const CommandLine&, const NetconfCommand& command) {
  connect(command);
  return kDone;
}

Status run(const CommandLine&, const Information& information) {
  write_output(information.text);
  return kDone;
}

Status run(int count, const char* const* arguments) {
  try {
    const CommandLine line = read_command_line(count, arguments);
    return std::visit([&](const auto& command) { return run(line, command); }, line.command);
  } catch (const LoadError& error) {
    complain(error.what());
    return kNotLoaded;
  } catch (const std::exception& error) {
    complain(error.what());
    return kUsage;
  }
}

}  // namespace
}  // namespace ocifip::tool

int main(int count, char** arguments) {
  ocifip::tool::guard_standard_streams();
  return ocifip::tool::run(count, arguments);
}
