#include "VelmoraHelper/Commands/ConfigCommand.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "ClientSetup/McpClients.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Commands/ClientChange.h"
#include "VelmoraHelper/Tools/NearestName.h"

namespace velmora {

namespace {

void listClients(std::ostream& out) {
  std::size_t width = 0;
  for (const auto& client : mcpClients()) width = std::max(width, client.id.size());
  for (const auto& client : mcpClients()) {
    out << client.id << std::string(width + 2 - client.id.size(), ' ') << client.name << '\n';
  }
}

// What ssh would not take for an option, nor a shell for anything but a word.
bool isHost(const std::string& host) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.:@%";
  return !host.empty() && host.front() != '-' && host.find_first_not_of(plain) == std::string::npos;
}

std::string unknownClient(const std::string& typed) {
  std::vector<std::string_view> ids;
  for (const auto& client : mcpClients()) ids.push_back(client.id);
  // A maker's name alone begins several.
  std::string begun;
  for (const auto id : ids) {
    if (id.starts_with(typed + "-")) begun += (begun.empty() ? "; did you mean " : " or ") + std::string(id);
  }
  const auto guess = begun.empty() ? didYouMean(nearestName(typed, ids)) : begun + "?";
  return "there is no client \"" + plainText(typed) + "\"" + guess +
         "\n`velmora config` lists the clients; others that take an mcpServers object are configured like "
         "cursor.";
}

struct Selected {
  const McpClient* client;
  ServerLaunch server;
};

// The client and what it is to launch; nothing after saying what is wrong with the words.
std::optional<Selected> selected(const CommandContext& context, const std::string& client, ToolForm form,
                                 const std::optional<std::string>& host) {
  const auto* const known = findMcpClient(client);
  if (known == nullptr) {
    context.err << "velmora: " << unknownClient(client) << '\n';
    return std::nullopt;
  }
  return Selected{known, host ? helperOver(*host, form) : localHelper(context.program.string(), form)};
}

bool checkHost(const CommandContext& context, const std::optional<std::string>& host) {
  if (!host || isHost(*host)) return true;
  context.err << "velmora: --ssh takes a machine as ssh does, such as build.example.org or ann@build\n";
  return false;
}

ExitStatus refusePath(const CommandContext& context) {
  context.err << "velmora: the path of this program is not UTF-8, so no client's configuration can hold it: "
              << plainText(context.program.string()) << '\n';
  return ExitStatus::failure;
}

}  // namespace

ExitStatus printConfig(const CommandContext& context, const std::string& client, ToolForm form,
                       const std::optional<std::string>& host) {
  if (!checkHost(context, host)) return ExitStatus::usage;
  if (client.empty()) {
    listClients(context.out);
    return ExitStatus::success;
  }
  const auto chosen = selected(context, client, form, host);
  if (!chosen) return ExitStatus::usage;
  const auto& [known, server] = *chosen;
  if (!server.arguments.empty() && known->id == "openclaw-cli") {
    context.err << "velmora: OpenClaw's commands take no arguments for a server; use `velmora config "
                << (host ? "--ssh " + *host : extendedOption) << " openclaw`.\n";
    return ExitStatus::usage;
  }
  try {
    context.out << snippetFor(*known, server) << '\n';
  } catch (const std::invalid_argument&) {
    return refusePath(context);
  }
  context.err << known->name << ": " << known->place << '\n';
  if (host) context.err << "It works when `ssh " << *host << " velmora --version` does without a question.\n";
  return ExitStatus::success;
}

ExitStatus changeConfig(const CommandContext& context, const std::string& client, ConfigAction action,
                        ToolForm form, const std::optional<std::string>& host) {
  if (!checkHost(context, host)) return ExitStatus::usage;
  if (client.empty()) {
    context.err << "velmora: say which client; `velmora config` lists them.\n";
    return ExitStatus::usage;
  }
  const auto chosen = selected(context, client, form, host);
  if (!chosen) return ExitStatus::usage;
  if (chosen->client->servers.empty()) {
    context.err << "velmora: " << client << " is only printed; use `velmora config "
                << (action.removes ? "--remove" : "--apply") << " openclaw`.\n";
    return ExitStatus::usage;
  }
  if (!isValidUtf8(context.program.string())) return refusePath(context);
  const ClientChange change(context, *chosen->client, chosen->server, action);
  const auto status = change.carryOut();
  if (host && status == ExitStatus::success && !action.removes)
    context.out << "It works when `ssh " << *host << " velmora --version` does without a question.\n";
  return status;
}

}  // namespace velmora
