// The session policies as the user reads them.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <optional>

#include "BridgeModels/BridgeEnums.h"

namespace velmora {

/// In the order of the cases.
inline QStringList sessionPolicyLabels() {
  return {QCoreApplication::translate("SessionPolicy", "Safe: managed sessions only"),
          QCoreApplication::translate("SessionPolicy", "Selective: existing sessions start read-only")};
}

/// What each means, in the same order.
inline QStringList sessionPolicyCaptions() {
  return {
      QCoreApplication::translate("SessionPolicy", "Agents may type into every idle session of yours."),
      QCoreApplication::translate(
          "SessionPolicy", "Agents may read your sessions, and type only into windows that they opened.")};
}

/// The policy at a row of the labels; nothing for any other row.
inline std::optional<SessionPolicy> sessionPolicyAt(int index) {
  if (index < 0 || index >= sessionPolicyLabels().size()) return std::nullopt;
  return static_cast<SessionPolicy>(index);
}

}  // namespace velmora
