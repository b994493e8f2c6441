// A command's surroundings, made up: streams, an application that answers as the test says, no other program.
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/Bridge/AnswerWords.h"
#include "VelmoraHelper/Bridge/CallFailure.h"
#include "VelmoraHelper/Commands/CommandContext.h"
#include "tests/VelmoraHelper/BridgeRecords.h"

namespace velmora::testing {

class CommandFixture : public ::testing::Test {
 protected:
  CommandContext context() {
    return {.in = in,
            .out = out,
            .err = err,
            .version = "1.2.3",
            .program = program,
            .socketURL = socketURL,
            .settings = settings,
            .connect =
                [this] {
                  connect();
                  return answersAt.empty() ? socketURL : answersAt;
                },
            .call =
                [this](const BridgeRequest& request, std::chrono::seconds deadline) {
                  requests.push_back(recordOf(request));
                  deadlines.push_back(deadline);
                  return answerTo(request);
                },
            .askProgram = [this](const std::vector<std::string>&) { return programAnswer; }};
  }

  template <class Payload>
  static LocalControlResponse success(const LocalControlRequest& request, const Payload& payload) {
    return {.requestId = request.requestId, .ok = true, .data = decodeJson<JSONValue>(encodeJson(payload))};
  }
  static LocalControlResponse failure(const LocalControlRequest& request, ErrorCode code,
                                      const std::string& message, const std::string& suggestion = "Retry.") {
    return {.requestId = request.requestId,
            .error = StructuredError{
                .code = code, .message = message, .operation = "test", .recoverySuggestion = suggestion}};
  }
  static LocalControlResponse absent(const LocalControlRequest&) {
    throw UnixSocketError::system("connect", ENOENT);
  }

  std::istringstream in;
  std::ostringstream out;
  std::ostringstream err;
  std::filesystem::path program = "/opt/velmora/bin/velmora";
  std::filesystem::path socketURL = "/nonexistent/app.velmora.Velmora/control-v1.sock";
  std::filesystem::path settings = "/nonexistent/Velmora/settings.json";
  std::filesystem::path answersAt;  ///< Where the application listens; `socketURL` when empty.
  std::function<void()> connect = [] {};
  std::function<LocalControlResponse(const LocalControlRequest&)> answer = absent;
  ProgramAnswer programAnswer{
      .end = ProgramAnswer::End::exited, .output = "tmux 3.4\n", .path = "/usr/bin/tmux"};
  std::vector<LocalControlRequest> requests;
  std::vector<std::chrono::seconds> deadlines;

 private:
  BridgeAnswer answerTo(const BridgeRequest& request) {
    try {
      return explained(request, bridgeAnswer(answer(requests.back())));
    } catch (const std::exception&) {
      return answerToFailure(request, std::current_exception());
    }
  }
};

}  // namespace velmora::testing
