#include "VelmoraApp/AppModel/ClientActivity.h"

#include <algorithm>

namespace velmora {

ClientIdentitySummary ownClient() { return {"Velmora.app", std::nullopt}; }

bool isOwnRequest(const MCPRequestRecord& record) {
  const bool isWhatScreensDo = record.toolName == ToolName::status ||
                               record.toolName == ToolName::listSessions ||
                               record.toolName == ToolName::focusSession;
  return isWhatScreensDo && record.client == ownClient();
}

std::vector<ClientActivity> clientActivity(const std::vector<MCPRequestRecord>& records, Date now) {
  const auto since = now.secondsSinceReferenceDate - connectedForSeconds;
  std::vector<ClientActivity> active;
  for (auto record = records.rbegin(); record != records.rend(); ++record) {
    if (record->receivedAt.secondsSinceReferenceDate < since) break;
    if (isOwnRequest(*record)) continue;
    auto known = std::find_if(active.begin(), active.end(),
                              [&](const auto& each) { return each.client == record->client; });
    if (known == active.end())
      known = active.insert(known, {.client = record->client, .lastCallAt = record->receivedAt});
    known->firstCallAt = record->receivedAt;
    ++known->calls;
    known->isCalling = known->isCalling || record->status == RequestStatus::processing;
  }
  return active;
}

std::vector<ClientIdentity> connectedClients(const std::vector<MCPRequestRecord>& records, Date now) {
  std::vector<ClientIdentity> connected;
  for (const auto& each : clientActivity(records, now)) {
    connected.push_back({.name = each.client.name,
                         .version = each.client.version,
                         .connectedAt = each.firstCallAt,
                         .lastSeenAt = each.lastCallAt});
  }
  return connected;
}

}  // namespace velmora
