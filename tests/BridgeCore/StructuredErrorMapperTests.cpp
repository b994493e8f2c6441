#include <gtest/gtest.h>

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/PlatformError.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

const std::optional<SessionReference> failedSession = testing::sampleReference();

template <class Error>
StructuredError mapped(Error error) {
  return StructuredErrorMapper::map(std::make_exception_ptr(std::move(error)), "terminal_send_command",
                                    failedSession);
}

TEST(StructuredErrorMapper, KeepsAStructuredErrorAsItIs) {
  auto error = catalogue::sessionStale(testing::sampleReference());
  EXPECT_EQ(mapped(error), error);
  EXPECT_EQ(mapped(error).operation, "session_validate");
}

TEST(StructuredErrorMapper, AValidationErrorKeepsItsWords) {
  EXPECT_EQ(
      mapped(ToolValidationError("Command must not be empty.")),
      (StructuredError{ErrorCode::invalidArgument, "Command must not be empty.", "terminal_send_command",
                       failedSession, false, "Correct the request arguments and try again."}));
}

TEST(StructuredErrorMapper, ADecodingErrorGetsTheFixedWords) {
  EXPECT_EQ(
      mapped(JsonDecodeError("arguments.key: unknown value")),
      (StructuredError{
          ErrorCode::invalidArgument, "Tool arguments could not be decoded using the advertised schema.",
          "terminal_send_command", failedSession, false, "Correct the request arguments and try again."}));
}

TEST(StructuredErrorMapper, OnlyTheNumberOfAPlatformErrorCounts) {
  EXPECT_EQ(
      mapped(PlatformError("Any.Domain", -1743, "secret words")),
      (StructuredError{ErrorCode::automationPermissionDenied, "Terminal automation permission was denied.",
                       "terminal_send_command", failedSession, false,
                       "Allow Terminal automation for Velmora in System Settings, then retry."}));
  EXPECT_EQ(mapped(PlatformError("Any.Domain", -600)),
            (StructuredError{ErrorCode::terminalNotRunning, "Terminal.app is not running.",
                             "terminal_send_command", failedSession, true,
                             "Open Terminal.app or create a new managed session, then retry."}));
  EXPECT_EQ(mapped(PlatformError("Any.Domain", -1708)),
            (StructuredError{ErrorCode::appleScriptExecutionFailed,
                             "Terminal.app could not complete the requested automation operation.",
                             "terminal_send_command", failedSession, true,
                             "Check Terminal.app and automation permission, then retry."}));
}

TEST(StructuredErrorMapper, AnythingElseIsAFailedOperation) {
  EXPECT_EQ(mapped(std::runtime_error("x")).code, ErrorCode::appleScriptExecutionFailed);
  EXPECT_EQ(mapped(42).code, ErrorCode::appleScriptExecutionFailed);
}

TEST(StructuredErrorMapper, AnAbsentSessionStaysAbsent) {
  const auto error =
      StructuredErrorMapper::map(std::make_exception_ptr(ToolValidationError("x")), "op", std::nullopt);
  EXPECT_EQ(error.session, std::nullopt);
}

TEST(StructuredErrorMapper, WarnsOfTruncation) {
  EXPECT_EQ(StructuredErrorMapper::warningForTruncation("terminal_read_output", *failedSession),
            (StructuredError{ErrorCode::outputTruncated, "The output exceeded the requested character limit.",
                             "terminal_read_output", failedSession, true,
                             "Request a larger maximum up to 50000 characters if more context is needed."}));
}

TEST(ErrorCatalogue, TheBusySuggestionsDifferInOneWord) {
  const auto command = catalogue::sessionBusy(catalogue::BusyInput::command, *failedSession);
  const auto keys = catalogue::sessionBusy(catalogue::BusyInput::keys, *failedSession);
  EXPECT_EQ(command, (StructuredError{
                         ErrorCode::sessionBusy, "The Terminal session is busy.", "terminal_send_command",
                         failedSession, true,
                         "Enable busy session input in Velmora settings only when you intend to send input "
                         "to the foreground process, or wait for the current process to finish and retry."}));
  EXPECT_EQ(keys, (StructuredError{
                      ErrorCode::sessionBusy, "The Terminal session is busy.", "terminal_send_key",
                      failedSession, true,
                      "Enable busy session input in Velmora settings only when you intend to send keys "
                      "to the foreground process, or wait for the current process to finish and retry."}));
}

TEST(ErrorCatalogue, TheRestReadsAsPublished) {
  EXPECT_EQ(catalogue::statusDeadlineExceeded(),
            (StructuredError{ErrorCode::terminalNotAvailable,
                             "Terminal.app did not respond within five seconds.", "terminal_status",
                             std::nullopt, true, "Verify Terminal.app is responsive, then retry."}));
  EXPECT_EQ(catalogue::noSelectedTab(),
            (StructuredError{ErrorCode::noTerminalWindows, "Terminal.app has no selected tab.",
                             "terminal_get_active_session", std::nullopt, true,
                             "Open a Terminal window and retry."}));
  EXPECT_EQ(catalogue::sessionNotAllowed("terminal_read_output", *failedSession),
            (StructuredError{ErrorCode::sessionNotAllowed,
                             "This Terminal session is not allowed for the requested operation.",
                             "terminal_read_output", failedSession, false,
                             "Allow the session in Velmora or choose a managed session."}));
  EXPECT_EQ(catalogue::outputUnavailable(*failedSession),
            (StructuredError{ErrorCode::outputUnavailable, "Terminal output is unavailable.",
                             "terminal_read_output", failedSession, true,
                             "Check the Terminal tab and retry with visible output."}));
  EXPECT_EQ(catalogue::screenCaptureUnavailable(*failedSession),
            (StructuredError{
                ErrorCode::screenCaptureUnavailable, "Terminal screen capture is unavailable.",
                "terminal_capture_screen", failedSession, true,
                "Allow Screen Recording for Velmora in System Settings, keep the Terminal window visible, "
                "then retry."}));
  EXPECT_EQ(
      catalogue::mcpPaused("terminal_create_session", std::nullopt),
      (StructuredError{ErrorCode::mcpPaused, "MCP change operations are paused.", "terminal_create_session",
                       std::nullopt, true, "Resume MCP operations in Velmora, then retry."}));
}

}  // namespace
}  // namespace velmora
