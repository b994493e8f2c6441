#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {

namespace {

template <class Result>
std::future<Result> unavailable() {
  return failedFuture<Result>(
      std::make_exception_ptr(PlatformError("Velmora.Automation", platformErrorCode::scriptError)));
}

}  // namespace

std::string UnavailableTerminalAutomation::displayName() const { return "Terminal"; }

std::future<TerminalRuntimeStatus> UnavailableTerminalAutomation::status() {
  std::promise<TerminalRuntimeStatus> answer;
  answer.set_value({});
  return answer.get_future();
}

std::future<std::vector<TerminalTabSnapshot>> UnavailableTerminalAutomation::listSessions() {
  return unavailable<std::vector<TerminalTabSnapshot>>();
}

std::future<TerminalTabSnapshot> UnavailableTerminalAutomation::createWindow() {
  return unavailable<TerminalTabSnapshot>();
}

std::future<void> UnavailableTerminalAutomation::send(std::string, std::string, std::int64_t, bool) {
  return unavailable<void>();
}

std::future<void> UnavailableTerminalAutomation::send(TerminalKey, std::int64_t, std::string, std::int64_t,
                                                      bool) {
  return unavailable<void>();
}

std::future<TerminalOutput> UnavailableTerminalAutomation::readOutput(OutputSource, std::int64_t, std::string,
                                                                      std::int64_t) {
  return unavailable<TerminalOutput>();
}

std::future<TerminalScreenCapture> UnavailableTerminalAutomation::captureScreen(std::string, std::int64_t) {
  return unavailable<TerminalScreenCapture>();
}

std::future<void> UnavailableTerminalAutomation::focus(std::string, std::int64_t) {
  return unavailable<void>();
}

}  // namespace velmora
