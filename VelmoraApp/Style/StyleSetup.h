// Makes this folder the style of every Qt Quick control.
#pragma once

class QQmlEngine;

namespace velmora {

/// Call once, before the first window, on the main thread.
void setUpStyle();

/// Chooses how windows are drawn on this system; `setUpStyle` calls it. In the platform's file.
void chooseRenderer();

/// Lets an engine find the QML modules that are linked into the program.
void addModules(QQmlEngine& engine);

}  // namespace velmora
