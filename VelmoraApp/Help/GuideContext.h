// What the help and the introduction have to know of the system that they speak of.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "VelmoraApp/Settings/MCPConnectionConfiguration.h"

namespace velmora {

/// The terminal that the texts speak of.
enum class GuidedTerminal { terminalApp, tmux };

/// For the main thread.
struct GuideContext {
  GuidedTerminal terminal;
  QStringList preferredLanguages;  ///< Tags such as "ko-KR", the most preferred one first.
  QString installPath;
  MCPConnectionConfiguration connection;

  /// Needs the application's object.
  static GuideContext ofThisSystem();
};

}  // namespace velmora
