#include "VelmoraHelper/Commands/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/ConfigCommand.h"
#include "VelmoraHelper/Commands/DoctorCommand.h"
#include "VelmoraHelper/Commands/NearestName.h"
#include "VelmoraHelper/Commands/StatusCommand.h"

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
  ExitStatus status = ExitStatus::success;

  CLI::App app(
      "Lets an MCP client work in your terminal through Velmora.\n"
      "Without arguments it serves MCP on standard input and output; the client launches it that way.",
      "velmora");
  app.set_version_flag("--version", "velmora " + context.version);
  app.require_subcommand(0, 1);  // were one required, its absence would hide an unknown option

  auto* const call = app.add_subcommand("call", "Calls one tool and prints its payload as JSON");
  call->add_option("TOOL", tool, "The tool's name, such as terminal_status")->required();
  call->add_option("JSON", json, "The tool's arguments, a JSON object; \"-\" reads them from standard input");
  call->callback([&] { status = callTool(context, tool, json); });

  auto* const show = app.add_subcommand("status", "Shows the bridge, the terminal and its sessions");
  show->callback([&] { status = printStatus(context); });

  auto* const doctor = app.add_subcommand("doctor", "Finds out what is wrong and says what to do about it");
  doctor->callback([&] { status = printDiagnosis(context); });

  auto* const config = app.add_subcommand("config", "Prints what connects an MCP client");
  config->add_option("CLIENT", client, "The client's name; without it, the clients are listed");
  config->callback([&] { status = printConfig(context, client); });

  if (const auto problem = unknownCommand(app, arguments); !problem.empty()) {
    context.err << "velmora: " << problem << '\n';
    return static_cast<int>(ExitStatus::usage);
  }
  std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
  try {
    app.parse(std::move(arguments));
    if (app.get_subcommands().empty()) throw CLI::RequiredError("A command");
  } catch (const CLI::ParseError& error) {
    const bool succeeded = app.exit(error, context.out, context.err) == 0;
    return static_cast<int>(succeeded ? ExitStatus::success : ExitStatus::usage);
  } catch (const std::exception& error) {
    context.err << "velmora: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::failure);
  }
  return static_cast<int>(status);
}

}  // namespace velmora
