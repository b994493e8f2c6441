// What the settings say differently from system to system.
#pragma once

#include <QtCore/QString>

namespace velmora {

/// The switch that shows and hides the menu-bar extra.
QString menuBarSwitchText();

/// Where the helper is taken to be, and that nothing of a network is involved.
QString connectionCaption();

}  // namespace velmora
