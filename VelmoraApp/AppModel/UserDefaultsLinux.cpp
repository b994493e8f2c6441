#include "VelmoraApp/AppModel/UserDefaults.h"

namespace velmora {

namespace {

std::string variable(const Environment& environment, const char* name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

}  // namespace

UserDefaults UserDefaults::standard(const Environment& environment) {
  auto directory = variable(environment, "XDG_CONFIG_HOME");
  if (!directory.starts_with('/')) directory = variable(environment, "HOME") + "/.config";
  return UserDefaults(QString::fromStdString(directory + "/Velmora/Velmora.conf"));
}

}  // namespace velmora
