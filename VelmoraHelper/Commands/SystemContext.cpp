#include "VelmoraHelper/Commands/SystemContext.h"

#include <iostream>
#include <utility>

#include "LocalControl/LocalControlClient.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraHelper/Commands/Deadline.h"
#include "VelmoraHelper/Commands/ProgramPath.h"

namespace velmora {

namespace {

constexpr std::chrono::seconds connectDeadline{5};
constexpr std::chrono::seconds programDeadline{5};

}  // namespace

CommandContext systemContext(std::string version, const std::string& invokedAs,
                             const Environment& environment) {
  const auto socketURL = UnixSocketEndpoint::defaultURL(environment);
  // The work may be left behind when its deadline passes, so it owns all that it uses.
  const auto connect = [socketURL] {
    within(connectDeadline, [socketURL] { UnixSocketClient::connect(socketURL); });
  };
  const auto bridge = [socketURL](const LocalControlRequest& request, std::chrono::milliseconds deadline) {
    return within(deadline, [socketURL, request] { return LocalControlClient(socketURL).send(request); });
  };
  const auto ask = [environment](const std::vector<std::string>& command) {
    return askProgram(command, environment, programDeadline);
  };
  return {.in = std::cin,
          .out = std::cout,
          .err = std::cerr,
          .version = std::move(version),
          .program = programPath(invokedAs, environment, runningProgramFile()),
          .socketURL = socketURL,
          .connect = connect,
          .bridge = bridge,
          .askProgram = ask};
}

}  // namespace velmora
