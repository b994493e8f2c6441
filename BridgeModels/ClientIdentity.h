// Who calls the bridge.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "BridgeModels/Date.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/Uuid.h"

namespace velmora {

/// One connected MCP client.
struct ClientIdentity {
  Uuid connectionId{};
  std::string name{};
  std::optional<std::string> version{};
  std::int32_t processId = 0;
  std::uint32_t effectiveUserId = 0;
  Date connectedAt{};
  Date lastSeenAt{};

  const Uuid& id() const { return connectionId; }

  bool operator==(const ClientIdentity&) const = default;
};
BOOST_DESCRIBE_STRUCT(ClientIdentity, (),
                      (connectionId, name, version, processId, effectiveUserId, connectedAt, lastSeenAt))

/// What history keeps of a client.
struct ClientIdentitySummary {
  std::string name{};
  std::optional<std::string> version{};

  bool operator==(const ClientIdentitySummary&) const = default;
};
BOOST_DESCRIBE_STRUCT(ClientIdentitySummary, (), (name, version))

}  // namespace velmora
