// Which MCP clients use the bridge, as far as their requests show it.
#pragma once

#include <vector>

#include "BridgeModels/ClientIdentity.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/MCPRequestRecord.h"

namespace velmora {

/// Under which the screens make their own requests.
ClientIdentitySummary ownClient();

/// Whether the screens made the request. The name alone does not count, since any client can take it: a deed
/// under that name is an agent's.
bool isOwnRequest(const MCPRequestRecord& record);

/// A client counts as connected this long after its last request: it opens a connection for each, and for
/// each only.
inline constexpr double connectedForSeconds = 600;

/// What a client did within the last `connectedForSeconds`.
struct ClientActivity {
  ClientIdentitySummary client{};
  Date firstCallAt{};
  Date lastCallAt{};
  int calls = 0;
  bool isCalling = false;  ///< A request of it is under way.

  bool operator==(const ClientActivity&) const = default;
};

/// Those who called within that time, the last one first; never the screens. `records` are oldest first. Any
/// thread.
std::vector<ClientActivity> clientActivity(const std::vector<MCPRequestRecord>& records, Date now);

/// The same as the status names connected clients.
std::vector<ClientIdentity> connectedClients(const std::vector<MCPRequestRecord>& records, Date now);

}  // namespace velmora
