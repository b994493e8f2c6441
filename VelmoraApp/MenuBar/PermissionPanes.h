// Where the person gives the application its permissions.
#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <vector>

namespace velmora {

/// A pane of the system's settings.
struct PermissionPane {
  QString title;
  QUrl url;
};

/// In the order of the menu; none on a system where no permission is needed.
std::vector<PermissionPane> permissionPanes();

}  // namespace velmora
