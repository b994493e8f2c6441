// The application's answer as the result of an MCP tool call.
#pragma once

#include <cstddef>
#include <string>

#include "LocalControl/LocalControlMessages.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// The members of a tool call's result, as JSON text without the brackets around them: the answer's envelope
/// as text and, where the revision has it, as structured content; of a capture, the picture as a link and,
/// when the file has at most `largestInlinePicture` bytes, inline.
/// Dates of the payload are written for people (DatesForPeople.h).
std::string toolResultMembers(LocalControlResponse response, ProtocolRevision revision,
                              std::size_t largestInlinePicture);

}  // namespace velmora
