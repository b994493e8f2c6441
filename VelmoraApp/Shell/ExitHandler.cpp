#include "VelmoraApp/Shell/ExitHandler.h"

#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace velmora {

namespace {

// Never destroyed: it is read while the process ends.
std::function<void()>& leaving() {
  static auto* const leave = new std::function<void()>;
  return *leave;
}

void handleExit() {
  if (!leaving()) return;
  std::exchange(leaving(), nullptr)();
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

ExitHandler::ExitHandler(std::function<void()> leave) {
  static const int registered = std::atexit(handleExit);
  if (registered != 0) throw std::runtime_error("there is no room for an exit handler");
  leaving() = std::move(leave);
}

ExitHandler::~ExitHandler() { leaving() = nullptr; }

}  // namespace velmora
