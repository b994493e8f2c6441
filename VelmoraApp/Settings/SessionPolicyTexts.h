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

/// What each means, in the same order.
inline QStringList sessionPolicyCaptions() {
  return {"Agents may type into every idle session of yours.",
          "Agents may read your sessions, and type only into windows that they opened."};
}

/// The policy at a row of the labels; nothing for any other row.
inline std::optional<SessionPolicy> sessionPolicyAt(int index) {
  if (index < 0 || index >= sessionPolicyLabels().size()) return std::nullopt;
  return static_cast<SessionPolicy>(index);
}

}  // namespace velmora
