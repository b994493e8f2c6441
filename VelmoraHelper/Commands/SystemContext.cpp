#include "VelmoraHelper/Commands/SystemContext.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "LocalControl/UnixSocketEndpoint.h"
#include "System/ApplicationSupport.h"
#include "System/RunningProcess.h"
#include "System/SocketPlatform.h"
#include "VelmoraHelper/Bridge/BridgeCalls.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"
#include "VelmoraHelper/Commands/ProgramPath.h"
#include "VelmoraHelper/Commands/TmuxServers.h"
#include "VelmoraHelper/Commands/UserTerminal.h"
#include "VelmoraHelper/Commands/WatchCommand.h"

namespace velmora {

namespace {

constexpr std::chrono::seconds programDeadline{5};
constexpr std::chrono::seconds slowProgramDeadline{60};

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

std::optional<pid_t> processAt(const std::vector<std::filesystem::path>& places) {
  try {
    return SocketPlatform::peerProcess(contactBridge(places).connection.descriptor());
  } catch (const UnixSocketError&) {
    return std::nullopt;
  }
}

// Of the folder, or of the nearest above it that is there.
std::optional<std::uintmax_t> roomAt(const std::filesystem::path& folder) {
  std::error_code error;
  auto place = folder;
  while (place.has_relative_path() && !std::filesystem::exists(place, error)) place = place.parent_path();
  const auto space = std::filesystem::space(place, error);
  return error ? std::nullopt : std::optional(space.available);
}

}  // namespace

CommandContext systemContext(const std::string& version, const std::string& invokedAs,
                             const Environment& environment) {
  const auto places = UnixSocketEndpoint::places(environment);
  const auto call = [places](BridgeRequest request, std::chrono::seconds deadline) {
    return answerOf([&places] { return contactBridge(places).connection; }, std::move(request), deadline);
  };
  const auto ask = [environment](const std::vector<std::string>& command) {
    return askProgram(command, environment, programDeadline);
  };
  const auto run = [environment](const std::vector<std::string>& command) {
    return askProgram(command, environment, slowProgramDeadline);
  };
  const auto person = [places, version] { return personCalls(places, version); };
  return {.in = std::cin,
          .out = std::cout,
          .err = std::cerr,
          .version = version,
          .program = programPath(invokedAs, environment, runningProgramFile()),
          .socketURL = places.front(),
          .settings = settingsFile(environment),
          .connect = [places] { return contactBridge(places).socketURL; },
          .call = call,
          .askProgram = ask,
          .person = person,
          .askUser = lineTypedAtTerminal,
          .becomeWatchScreen = [] { return becomeWatchScreen(runningProgramFile()); },
          .environment = environment,
          .runProgram = run,
          .bridgeProcess = [places] { return processAt(places); },
          .roomAt = roomAt,
          .tmuxServers =
              [environment](const auto& ofBridge) {
                return answeringTmuxServers(environment, ::geteuid(), ofBridge);
              }};
}

}  // namespace velmora
