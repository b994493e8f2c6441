#include "BridgeModels/Text.h"
