// The errors of the settings and history files. Pure.
#pragma once

#include "BridgeModels/StructuredError.h"

namespace velmora {

enum class StorageFailure {
  historyUnreadable,
  historySchema,
  historyUnsaved,
  historyPermissions,
  historyUndeleted,
  settingsSchema,
  settingsPermissions,
  directoryPermissions,
};

StructuredError storageError(StorageFailure failure);

}  // namespace velmora
