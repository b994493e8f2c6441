// The revisions of the Model Context Protocol that are served, and what tells them apart.
#pragma once

#include <optional>
#include <string_view>

#include "BridgeModels/WireNames.h"

namespace velmora {

/// Named by their months. In the order of their dates, so that "since" is a comparison.
enum class ProtocolRevision { november2024, march2025, june2025, november2025, july2026 };

template <>
inline constexpr auto enumCases<ProtocolRevision> = std::to_array<EnumCase<ProtocolRevision>>({
    {ProtocolRevision::november2024, "2024-11-05"},
    {ProtocolRevision::march2025, "2025-03-26"},
    {ProtocolRevision::june2025, "2025-06-18"},
    {ProtocolRevision::november2025, "2025-11-25"},
    {ProtocolRevision::july2026, "2026-07-28"},
});

/// The newest revision that begins with `initialize`. Never offer a later one there: clients reject it.
inline constexpr auto latestWithHandshake = ProtocolRevision::november2025;

/// Whether there is no session: every request says in `_meta` which revision it speaks.
constexpr bool isStateless(ProtocolRevision revision) { return revision > latestWithHandshake; }

constexpr bool hasBatches(ProtocolRevision revision) { return revision == ProtocolRevision::march2025; }

constexpr bool hasToolAnnotations(ProtocolRevision revision) {
  return revision >= ProtocolRevision::march2025;
}

// Structured content with its schema, titles, and links to resources came together.
constexpr bool hasStructuredContent(ProtocolRevision revision) {
  return revision >= ProtocolRevision::june2025;
}
constexpr bool hasTitles(ProtocolRevision revision) { return revision >= ProtocolRevision::june2025; }
constexpr bool hasResourceLinks(ProtocolRevision revision) { return revision >= ProtocolRevision::june2025; }

// A description, icons and a website came together.
constexpr bool hasServerDescription(ProtocolRevision revision) {
  return revision >= ProtocolRevision::november2025;
}

/// Whether an error to a message without a readable id leaves the id out; before, JSON-RPC's null stands
/// there.
constexpr bool leavesOutUnknownIds(ProtocolRevision revision) {
  return revision >= ProtocolRevision::november2025;
}

}  // namespace velmora
