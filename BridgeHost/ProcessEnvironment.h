// The environment that this process was started with. Only `main` functions read it.
#pragma once

#include "BridgeModels/Environment.h"

namespace velmora {

Environment processEnvironment();

}  // namespace velmora
