#include "VelmoraHelper/Commands/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <ostream>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/ConfigCommand.h"
#include "VelmoraHelper/Commands/DoctorCommand.h"
#include "VelmoraHelper/Commands/PersonCommands.h"
#include "VelmoraHelper/Commands/SessionsCommand.h"
#include "VelmoraHelper/Commands/ShellIntegrationCommand.h"
#include "VelmoraHelper/Commands/StatusCommand.h"
#include "VelmoraHelper/Tools/NearestName.h"

namespace velmora {

namespace {

// A word that is not a command; the parser would only call it unexpected.
std::string unknownCommand(CLI::App& app, const std::vector<std::string>& arguments) {
  if (arguments.empty() || arguments.front().starts_with('-')) return {};
  std::vector<std::string> names;
  for (const auto* command : app.get_subcommands({})) names.push_back(command->get_name());
  const auto& typed = arguments.front();
  if (std::find(names.begin(), names.end(), typed) != names.end()) return {};
  const std::vector<std::string_view> views(names.begin(), names.end());
  return "there is no command \"" + plainText(typed) + "\"" + didYouMean(nearestName(typed, views)) +
         "\n`velmora --help` lists the commands.";
}

}  // namespace

int runCommandLine(const CommandContext& context, std::vector<std::string> arguments) {
  std::string tool;
  std::string json = "{}";
  std::string client;
  bool extended = false;
  ExitStatus status = ExitStatus::success;

  CLI::App app(
      "Lets an MCP client work in your terminal through Velmora.\n"
      "Without arguments it serves MCP on standard input and output; the client launches it that way.",
      "velmora");
  app.set_version_flag("--version", "velmora " + context.version);
  // main serves what has this option alone; here it is for the help and for a wrong place.
  app.add_flag(extendedOption, extended, "Serves MCP in the extended form of the tools");
  app.require_subcommand(0, 1);  // were one required, its absence would hide an unknown option

  auto* const call = app.add_subcommand("call", "Calls one tool and prints its payload as JSON");
  call->add_option("TOOL", tool, "The tool's name, such as terminal_status")->required();
  call->add_option("JSON", json, "The tool's arguments, a JSON object; \"-\" reads them from standard input");
  call->callback([&] { status = callTool(context, tool, json); });

  auto* const show = app.add_subcommand("status", "Shows the bridge, the terminal and its sessions");
  bool asJson = false;
  show->add_flag("--json", asJson, "Print JSON");
  show->callback([&] { status = asJson ? printStatusAsJson(context) : printStatus(context); });

  addPersonCommands(app, context, status);

  auto* const doctor = app.add_subcommand("doctor", "Finds out what is wrong and says what to do about it");
  doctor->add_flag("--json", asJson, "Print JSON");
  doctor->callback([&] { status = printDiagnosis(context, asJson); });

  auto* const config = app.add_subcommand("config", "Prints what connects an MCP client, or connects it");
  config->add_option("CLIENT", client, "The client's name; without it, the clients are listed");
  config->add_flag(extendedOption, extended, "Offer the client the extended form of the tools");
  std::optional<std::string> host;
  config->add_option("--ssh", host, "Of this machine, over SSH, rather than of the one it runs on");
  bool applies = false;
  ConfigAction action;
  auto* const apply = config->add_flag("--apply", applies, "Put it into the client's own configuration");
  auto* const remove = config->add_flag("--remove", action.removes, "Take it out of there");
  remove->excludes(apply);
  auto* const rehearse =
      config->add_flag("--dry-run", action.isRehearsal, "Say what either would change, and change nothing");
  config->callback([&] {
    const auto form = extended ? ToolForm::extended : ToolForm::plain;
    const bool changes = applies || action.removes;
    if (rehearse->count() > 0 && !changes) throw CLI::RequiresError("--dry-run", "--apply or --remove");
    status = changes ? changeConfig(context, client, action, form, host)
                     : printConfig(context, client, form, host);
  });

  std::string shell;
  auto* const integration =
      app.add_subcommand("shell-integration", "Prints what tells Velmora how your commands ended");
  integration->add_option("SHELL", shell, "bash, zsh or fish")->required();
  integration->callback([&] { status = printShellIntegration(context, shell); });

  for (auto* const command : app.get_subcommands({})) command->fallthrough();  // to --version

  if (const auto problem = unknownCommand(app, arguments); !problem.empty()) {
    context.err << "velmora: " << problem << '\n';
    return static_cast<int>(ExitStatus::usage);
  }
  std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
  try {
    app.parse(std::move(arguments));
    if (app.count(extendedOption) > 0) throw CLI::ExcludesError(extendedOption, "a command");
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A command");
  } catch (const CLI::ParseError& error) {
    if (app.exit(error, context.out, context.err) != 0) status = ExitStatus::usage;
  } catch (const std::exception& error) {
    context.err << "velmora: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::failure);
  }
  context.out.flush();
  if (context.out) return static_cast<int>(status);
  context.err << "velmora: standard output could not be written\n";
  return static_cast<int>(ExitStatus::failure);
}

}  // namespace velmora
