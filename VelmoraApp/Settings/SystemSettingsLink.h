// The panes of System Settings in which the person gives the application its permissions.
#pragma once

#include <QtCore/QUrl>

namespace velmora {

enum class SystemSettingsLink { accessibility, automation, screenRecording };

/// What opens the pane.
QUrl systemSettingsUrl(SystemSettingsLink link);

}  // namespace velmora
