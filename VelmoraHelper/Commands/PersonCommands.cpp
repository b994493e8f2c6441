#include "VelmoraHelper/Commands/PersonCommands.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "VelmoraHelper/Commands/HistoryCommand.h"
#include "VelmoraHelper/Commands/LimitCommands.h"
#include "VelmoraHelper/Commands/SessionsCommand.h"
#include "VelmoraHelper/Commands/WatchCommand.h"

namespace velmora {

namespace {

// Adds the names to an argument's help, and refuses all others.
template <class Enum>
CLI::Option* oneOf(CLI::Option* argument) {
  std::vector<std::string> names;
  names.reserve(enumCases<Enum>.size());
  for (const auto& entry : enumCases<Enum>) names.emplace_back(entry.wireName);
  return argument->required()->check(CLI::IsMember(names));
}

}  // namespace

void addPersonCommands(CLI::App& app, const CommandContext& context, ExitStatus& status) {
  struct Words {
    std::string session;
    std::string word;
    bool json = false;
    bool plain = false;
    HistoryQuestion history;
  };
  const auto words = std::make_shared<Words>();

  auto* const sessions = app.add_subcommand("sessions", "Lists your sessions, and how to call each");
  sessions->add_flag("--json", words->json, "Print JSON");
  sessions->callback([&, words] { status = printSessionList(context, words->json); });

  auto* const history = app.add_subcommand("history", "Shows what agents asked for");
  history->add_option("--since", words->history.since, "Only from so long ago on: 90s, 30m, 1h, 2d");
  history->add_option("--session", words->history.session, "Only of this session");
  history->add_option("--tool", words->history.tool, "Only of this tool");
  history->add_flag("--json", words->history.json, "Print JSON");
  history->callback([&, words] { status = printHistory(context, words->history); });

  auto* const watch = app.add_subcommand("watch", "Shows sessions and what agents ask, as it happens");
  auto* const plain = watch->add_flag("--plain", words->plain, "Print a line a request");
  watch->add_flag("--json", words->json, "Print a JSON object a line")->excludes(plain);
  watch->callback([&, words] {
    status = words->plain || words->json ? watchRequests(context, words->json) : showWatchScreen(context);
  });

  auto* const pause = app.add_subcommand("pause", "Stops agents from typing and opening windows");
  pause->callback([&] { status = pauseBridge(context); });

  auto* const resume = app.add_subcommand("resume", "Ends the pause; asks for a word at your terminal");
  resume->callback([&] { status = resumeBridge(context); });

  auto* const permit = app.add_subcommand("permit", "Changes what agents may do with a session");
  permit->add_option("SESSION", words->session, "A target such as %5, or the beginning of its id")
      ->required();
  oneOf<SessionPermission>(permit->add_option("PERMISSION", words->word));
  permit->callback([&, words] {
    status = permitSession(context, words->session, *fromWireName<SessionPermission>(words->word));
  });

  auto* const policy = app.add_subcommand("policy", "Changes how sessions are found: safe or selective");
  oneOf<SessionPolicy>(policy->add_option("POLICY", words->word));
  policy->callback([&, words] { status = changePolicy(context, *fromWireName<SessionPolicy>(words->word)); });

  auto* const busy =
      app.add_subcommand("busy", "Allows or refuses input to programs that run: on, own or off");
  busy->add_option("STATE", words->word, "own: only in windows that agents opened")
      ->required()
      ->check(CLI::IsMember({"on", "own", "off"}));
  busy->callback([&, words] {
    status = changeBusyInput(context, words->word == "on"    ? BusyInputChoice::all
                                      : words->word == "own" ? BusyInputChoice::ownWindows
                                                             : BusyInputChoice::none);
  });
}

}  // namespace velmora
