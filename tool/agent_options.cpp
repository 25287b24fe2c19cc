#include "agent_options.h"

#include "option_parts.h"

namespace ocifip::tool {
namespace {

constexpr const char* kServeExample =
    "Clients come by ssh: sshd runs \"ocifip netconf\" as its subsystem \"netconf\". Everybody "
    "who\n"
    "may connect to the socket may change the configuration, but those who may only read. The log\n"
    "goes to standard error. Without --save changes are gone when the agent ends.\n\n"
    "Example:\n"
    "  ocifip serve --device device.json --save --socket ./agent.sock --read-only-group operators";

constexpr const char* kNetconfExample =
    "Copies bytes between its standard input and output and the agent. In sshd_config:\n"
    "  Subsystem netconf /usr/bin/ocifip netconf";

void add_socket(CLI::App* command, std::string& socket) {
  command->add_option("--socket", socket, "Unix socket of the agent")
      ->type_name("PATH")
      ->check(is_value())
      ->capture_default_str();
}

void add_limits(CLI::App* command, AgentOptions& agent) {
  command->add_option("--most-sessions", agent.most_sessions, "Sessions that may be open at a time")
      ->type_name("COUNT")
      ->check(CLI::Range(1, 10000).description(""))
      ->capture_default_str();
  command->add_option("--longest-message", agent.longest_message, "Bytes that a message may have")
      ->type_name("BYTES")
      ->check(CLI::Range(1024, 1 << 30).description(""))
      ->capture_default_str();
  command
      ->add_option_function<int>(
          "--patience", [&agent](int seconds) { agent.patience = std::chrono::seconds(seconds); },
          "How long a hello, the rest of a message, or a client that does not read is waited for "
          "[60]")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, 86400).description(""));
}

}  // namespace

void add_serve(CLI::App& program, CommandLine& line, ServeCommand& serve) {
  CLI::App* command = program.add_subcommand("serve", "Serve NETCONF clients of a device");
  AgentOptions& agent = serve.agent;
  command->add_option("-d,--device", line.host.device, "Device file (required)")
      ->type_name("FILE")
      ->check(is_value());
  add_socket(command, agent.socket);
  command->add_flag("-s,--save", agent.save, "Write each change to the device file");
  command
      ->add_option("--socket-group", agent.socket_group,
                   "Group whose members may connect (default: that of the process)")
      ->type_name("GROUP")
      ->check(is_value());
  command
      ->add_option("--read-only-group", agent.read_only_group, "Group whose members may only read")
      ->type_name("GROUP")
      ->check(is_value());
  command
      ->add_option("--read-only-users", serve.read_only_users,
                   "File with users who may only read, a name a line")
      ->type_name("FILE")
      ->check(is_value());
  add_limits(command, agent);
  add_libraries(command, line.host);
  command->footer(kServeExample);
  command->callback([&line, &serve] {
    if (!line.host.device) throw UsageError("serve needs a device: give --device FILE");
    line.command = serve;
  });
}

void add_netconf(CLI::App& program, CommandLine& line, NetconfCommand& netconf) {
  CLI::App* command =
      program.add_subcommand("netconf", "Connect a NETCONF client to the agent, for sshd");
  add_socket(command, netconf.socket);
  command->footer(kNetconfExample);
  command->callback([&line, &netconf] { line.command = netconf; });
}

}  // namespace ocifip::tool
