// What a request says about itself besides its method and arguments.
#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <string>

#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// The name and version that a client reports. Never verified; for display only.
struct ClientName {
  std::string name = "unknown";
  std::optional<std::string> version{};

  bool operator==(const ClientName&) const = default;
};

/// The revision that a request is served by, and who sent it.
struct RequestContext {
  ProtocolRevision revision = latestWithHandshake;
  ClientName client{};

  bool operator==(const RequestContext&) const = default;
};

/// The context in the request's own `_meta`, or nothing if it has none, as in the revisions with a handshake.
/// Throws JsonRpcFailure if it is incomplete or names a revision that needs a handshake.
std::optional<RequestContext> statedContext(const boost::json::object& params);

/// The client's name from an `Implementation` object; anything else gives the default.
ClientName clientNameOf(const boost::json::value* implementation);

/// The token for progress notifications, as JSON text; nothing if the request has none.
std::optional<std::string> progressTokenOf(const boost::json::object& params);

}  // namespace velmora
