// In the place of PictureModule.cpp where a program cannot load libraries (VELMORA_PICTURES=OFF).
#include <stdexcept>

#include "TerminalAutomation/Tmux/Picture/PictureModule.h"

namespace velmora {

std::filesystem::path pictureModuleFile() { return {}; }

std::string drawWithModule(const std::filesystem::path&, const PaneScreen&) {
  throw std::runtime_error("this build of Velmora draws no pictures");
}

}  // namespace velmora
