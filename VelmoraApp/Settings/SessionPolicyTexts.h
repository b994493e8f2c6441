// The session policies as the user reads them.
#pragma once

#include <QtCore/QStringList>
#include <optional>

#include "BridgeModels/BridgeEnums.h"

namespace velmora {

/// In the order of the cases.
inline QStringList sessionPolicyLabels() {
  return {"Safe: managed sessions only", "Selective: existing sessions start read-only"};
}

/// The policy of a row of the labels; nothing beside them.
inline std::optional<SessionPolicy> sessionPolicyAt(int index) {
  if (index < 0 || index >= sessionPolicyLabels().size()) return std::nullopt;
  return static_cast<SessionPolicy>(index);
}

}  // namespace velmora
