// All that PictureModule.cpp knows of the library that draws; it is the library's only file of its own.
#include "TerminalAutomation/Tmux/Picture/PanePicture.h"

extern "C" void velmoraDrawPane(const velmora::PaneScreen& screen, std::string& png);

/// Throws std::runtime_error.
extern "C" void velmoraDrawPane(const velmora::PaneScreen& screen, std::string& png) {
  png = velmora::renderPanePicture(screen);
}
