// What the application needs permission for, and where the user gives it.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <optional>
#include <vector>

#include "BridgeModels/BridgeStatus.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

struct PermissionSettingsRow {
  Q_GADGET
  Q_PROPERTY(QString icon MEMBER icon)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString instruction MEMBER instruction)
  Q_PROPERTY(QString buttonTitle MEMBER buttonTitle)
  Q_PROPERTY(bool attention MEMBER attention)

 public:
  std::optional<SystemSettingsLink> link;  ///< What the button opens.
  QString icon;
  QString title;
  QString instruction;
  QString buttonTitle;     ///< Empty without a pane to open.
  bool attention = false;  ///< Something is missing; the instruction says what to do.

  bool operator==(const PermissionSettingsRow&) const = default;
};

struct PermissionSettings {
  QString caption;
  std::vector<PermissionSettingsRow> rows;

  bool operator==(const PermissionSettings&) const = default;
};

/// For the current state.
PermissionSettings permissionSettings(GuidedTerminal terminal, const BridgeStatus& status);

}  // namespace velmora
