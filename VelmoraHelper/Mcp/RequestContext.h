// What a request says of itself besides its method and arguments.
#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <string>

#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// The name and version that a client gives of itself. Never verified; for display only.
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

/// The context that the request's own `_meta` states, or nothing when it states none, as before the stateless
/// revision. Throws JsonRpcFailure for one that is incomplete or of a revision that is not served so.
std::optional<RequestContext> statedContext(const boost::json::object& params);

/// The client's name from an `Implementation` object; anything else gives the default.
ClientName clientNameOf(const boost::json::value* implementation);

/// The token for progress notifications, as JSON text; nothing when none is asked for.
std::optional<std::string> progressTokenOf(const boost::json::object& params);

}  // namespace velmora
