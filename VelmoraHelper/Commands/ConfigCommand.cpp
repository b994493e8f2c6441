#include "VelmoraHelper/Commands/ConfigCommand.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "ClientSetup/McpClients.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Commands/NearestName.h"

namespace velmora {

namespace {

void listClients(std::ostream& out) {
  std::size_t width = 0;
  for (const auto& client : mcpClients()) width = std::max(width, client.id.size());
  for (const auto& client : mcpClients()) {
    out << client.id << std::string(width + 2 - client.id.size(), ' ') << client.name << '\n';
  }
}

std::string unknownClient(const std::string& typed) {
  std::vector<std::string_view> ids;
  for (const auto& client : mcpClients()) ids.push_back(client.id);
  return "there is no client \"" + plainText(typed) + "\"" + didYouMean(nearestName(typed, ids)) +
         "\n`velmora config` lists the clients; others that take an mcpServers object are configured like "
         "cursor.";
}

}  // namespace

ExitStatus printConfig(const CommandContext& context, const std::string& client) {
  if (client.empty()) {
    listClients(context.out);
    return ExitStatus::success;
  }
  const auto* const known = findMcpClient(client);
  if (known == nullptr) {
    context.err << "velmora: " << unknownClient(client) << '\n';
    return ExitStatus::usage;
  }
  try {
    context.out << snippetFor(*known, context.program.string()) << '\n';
  } catch (const std::invalid_argument&) {
    context.err
        << "velmora: the path of this program is not UTF-8, so no client's configuration can hold it: "
        << plainText(context.program.string()) << '\n';
    return ExitStatus::failure;
  }
  context.err << known->name << ": " << known->place << '\n';
  return ExitStatus::success;
}

}  // namespace velmora
