// What requests do and how they end, in the user's words.
#pragma once

#include <QtCore/QString>

#include "BridgeModels/MCPRequestRecord.h"
#include "VelmoraApp/Style/Meaning.h"

namespace velmora {

/// "Coding agent 2.1.0"; "An agent" when it gave no name.
QString clientText(const ClientIdentitySummary& client);

/// "Coding agent is sending a command to build (/dev/pts/1)", and so on: as far as the request has come.
QString deedText(const MCPRequestRecord& record);

/// What a status says, as a sentence.
QString statusText(RequestStatus status);

Meaning statusMeaning(RequestStatus status);

}  // namespace velmora
