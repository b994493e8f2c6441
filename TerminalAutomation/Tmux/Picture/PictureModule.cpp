#include "TerminalAutomation/Tmux/Picture/PictureModule.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>
#include <system_error>

#include "System/RunningProcess.h"

namespace velmora {

std::filesystem::path pictureModuleFile() {
  const std::filesystem::path folder = runningProgramFile().parent_path();
  return folder.empty() ? folder : folder.parent_path() / "lib/velmora" / VELMORA_PICTURE_MODULE;
}

namespace {

// Whoever may write the library, or put another in its place, acts as this user.
void requireTrusted(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return;  // loading it says why
  if (status.st_uid != 0 && status.st_uid != ::geteuid())
    throw std::runtime_error("the part that draws is not loaded: " + path.string() +
                             " belongs to another user");
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
    throw std::runtime_error("the part that draws is not loaded: others may write to " + path.string());
}

}  // namespace

std::string drawWithModule(const std::filesystem::path& module, const PaneScreen& screen) {
  // Without a folder of its own, a name would be looked for in the folders of the environment.
  if (!module.is_absolute()) throw std::runtime_error("this program's folder is not known");
  std::error_code none;
  const auto resolved = std::filesystem::canonical(module, none);
  const auto& file = none ? module : resolved;
  requireTrusted(file);
  requireTrusted(file.parent_path());
  void* const library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const entry = library == nullptr ? nullptr : ::dlsym(library, "velmoraDrawPane");
  if (entry == nullptr) {
    const char* const reason = ::dlerror();
    throw std::runtime_error("the part that draws cannot be loaded; after an update, restart Velmora (" +
                             std::string(reason == nullptr ? "no reason given" : reason) + ")");
  }
  std::string png;
  reinterpret_cast<void (*)(const PaneScreen&, std::string&)>(entry)(screen, png);
  return png;
}

}  // namespace velmora
