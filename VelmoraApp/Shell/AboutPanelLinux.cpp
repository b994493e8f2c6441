#include "VelmoraApp/Shell/AboutPanel.h"

namespace velmora {

bool showStandardAboutPanel() { return false; }

void addAboutToApplicationMenu(QObject*) {}

}  // namespace velmora
