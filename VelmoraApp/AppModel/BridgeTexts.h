// What the bridge says in fixed English words, in the user's language.
#pragma once

#include <QtCore/QString>
#include <string_view>

#include "BridgeModels/StructuredError.h"

namespace velmora {

/// Clients read these sentences too, so they are English where they are made. What is not known here, because
/// it names a path or a program, stays as it is; of several sentences, each for itself. Any thread.
QString bridgeText(std::string_view english);

/// What went wrong and what helps against it.
QString problemText(const StructuredError& error);

}  // namespace velmora
