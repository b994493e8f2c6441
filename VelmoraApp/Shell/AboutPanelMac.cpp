#include <QtGui/QAction>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>

#include "MacPlatform/AboutPanel.h"
#include "VelmoraApp/Shell/AboutPanel.h"

namespace velmora {

bool showStandardAboutPanel() {
  mac::showAboutPanel();
  return true;
}

// Qt moves an action of this role from wherever it stands into the application menu.
void addAboutToApplicationMenu(QObject* owner) {
  auto* bar = new QMenuBar;
  QObject::connect(owner, &QObject::destroyed, bar, &QObject::deleteLater);
  auto* about = bar->addMenu("Velmora")->addAction("About Velmora");
  about->setMenuRole(QAction::AboutRole);
  QObject::connect(about, &QAction::triggered, bar, &mac::showAboutPanel);
}

}  // namespace velmora
