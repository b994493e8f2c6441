#include <stdexcept>

#include "System/Environment.h"
#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

UserDefaults UserDefaults::standard(const Environment& environment) {
  const auto directory = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  if (directory.empty()) throw std::runtime_error("neither XDG_CONFIG_HOME nor HOME names a directory");
  return UserDefaults(QString::fromStdString((directory / "Velmora" / "Velmora.conf").string()));
}

}  // namespace velmora
