#include "VelmoraHelper/Commands/SystemContext.h"

#include <poll.h>

#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/ApplicationSupport.h"
#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"
#include "VelmoraHelper/Commands/ProgramPath.h"

namespace velmora {

namespace {

constexpr std::chrono::seconds programDeadline{5};

SteadyTime now() { return std::chrono::steady_clock::now(); }

void waitForProgress(const BridgeCalls& calls) {
  std::vector<pollfd> descriptors;
  for (const auto& [descriptor, writing] : calls.awaited()) {
    const auto events = static_cast<short>(POLLIN | (writing ? POLLOUT : 0));
    descriptors.push_back({.fd = descriptor, .events = events, .revents = 0});
  }
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(calls.nextDeadline().value_or(now()) - now());
  const auto timeout = static_cast<int>(std::max<std::int64_t>(left.count(), 0));
  if (::poll(descriptors.data(), static_cast<nfds_t>(descriptors.size()), timeout) < 0 && errno != EINTR) {
    throw std::system_error(errno, std::generic_category(), "poll");
  }
}

BridgeAnswer answerOf(const BridgeCalls::Connecting& connect, BridgeRequest request,
                      std::chrono::seconds deadline) {
  BridgeCalls calls(connect, {.deadline = deadline});
  std::optional<BridgeAnswer> answer;
  calls.start(
      std::move(request), [&answer](BridgeAnswer given) { answer = std::move(given); }, now());
  for (calls.advance(now()); !answer; calls.advance(now())) waitForProgress(calls);
  return std::move(*answer);
}

std::filesystem::path settingsFile(const Environment& environment) {
  try {
    return applicationSupportDirectory(environment) / "Velmora" / "settings.json";
  } catch (const std::runtime_error&) {  // no home: nothing is stored either
    return {};
  }
}

}  // namespace

CommandContext systemContext(std::string version, const std::string& invokedAs,
                             const Environment& environment) {
  const auto places = UnixSocketEndpoint::places(environment);
  const auto call = [places](BridgeRequest request, std::chrono::seconds deadline) {
    return answerOf([&places] { return contactBridge(places).connection; }, std::move(request), deadline);
  };
  const auto ask = [environment](const std::vector<std::string>& command) {
    return askProgram(command, environment, programDeadline);
  };
  return {.in = std::cin,
          .out = std::cout,
          .err = std::cerr,
          .version = std::move(version),
          .program = programPath(invokedAs, environment, runningProgramFile()),
          .socketURL = places.front(),
          .settings = settingsFile(environment),
          .connect = [places] { return contactBridge(places).socketURL; },
          .call = call,
          .askProgram = ask};
}

}  // namespace velmora
