// The application's name and version, as the system shows them.
#pragma once

class QObject;

namespace velmora {

/// Opens the standard about panel. False where the system has none: the window shows them itself then.
bool showStandardAboutPanel();

/// Puts "About Velmora" into the application menu, where the system has one, for as long as `owner` lives.
void addAboutToApplicationMenu(QObject* owner);

}  // namespace velmora
