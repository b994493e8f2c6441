#include <gtest/gtest.h>

#include "TerminalAutomation/Tmux/TmuxErrors.h"

namespace velmora {
namespace {

using End = TmuxAnswer::End;

struct ErrorRow {
  TmuxAnswer answer;
  TmuxEffect effect;
  ErrorCode code;
  bool retryable;
  std::string part;  ///< Of the message.
};

TmuxAnswer exited(int status, std::string error) {
  return {.end = End::exited, .exitStatus = status, .output = {}, .errorOutput = std::move(error)};
}

TEST(TmuxErrors, SuccessHasNoErrorOutput) {
  EXPECT_FALSE(tmuxFailure(exited(0, ""), TmuxEffect::none).has_value());
  EXPECT_TRUE(tmuxFailure(exited(0, "anything"), TmuxEffect::none).has_value());
  EXPECT_TRUE(tmuxFailure(exited(1, ""), TmuxEffect::none).has_value());
}

TEST(TmuxErrors, EachFailureHasItsCodeAndItsWords) {
  const std::vector<ErrorRow> rows{
      {exited(1, "no server running on /tmp/s\n"), TmuxEffect::typed, ErrorCode::terminalNotRunning, true,
       "No tmux server is running."},
      {exited(1, "error connecting to /tmp/s (No such file or directory)\n"), TmuxEffect::none,
       ErrorCode::terminalNotRunning, true, "No tmux server"},
      {exited(1, "error connecting to /tmp/s (Connection refused)\n"), TmuxEffect::none,
       ErrorCode::terminalNotRunning, true, "No tmux server"},
      {exited(1, "server exited unexpectedly\n"), TmuxEffect::none, ErrorCode::terminalNotRunning, true,
       "No tmux"},
      {exited(1, "server exited unexpectedly\n"), TmuxEffect::typed, ErrorCode::appleScriptExecutionFailed,
       false, "outcome is unknown"},
      {exited(1, "lost server\n"), TmuxEffect::created, ErrorCode::appleScriptExecutionFailed, false,
       "unknown whether the session was created"},
      {exited(1, "error connecting to /tmp/s (Permission denied)\n"), TmuxEffect::none,
       ErrorCode::automationPermissionDenied, false, "refused the connection"},
      {exited(1, "directory /tmp/tmux-0 has unsafe permissions\n"), TmuxEffect::none,
       ErrorCode::automationPermissionDenied, false, "unsafe permissions"},
      {exited(0, "access not allowed\n"), TmuxEffect::typed, ErrorCode::automationPermissionDenied, false,
       "does not admit"},
      {exited(1, "client is read-only\n"), TmuxEffect::typed, ErrorCode::automationPermissionDenied, false,
       "reading only"},
      {exited(0, "server version is too old for client\n"), TmuxEffect::none, ErrorCode::terminalNotAvailable,
       false, "do not work together"},
      {exited(1, "protocol version mismatch (client 8, server 7)\n"), TmuxEffect::none,
       ErrorCode::terminalNotAvailable, false, "do not work together"},
      {exited(1, "something new\nand more\n"), TmuxEffect::none, ErrorCode::appleScriptExecutionFailed, true,
       "tmux could not complete the operation: something new."},
      {exited(1, "can't find pane: %99\n"), TmuxEffect::typed, ErrorCode::appleScriptExecutionFailed, false,
       "can't find pane: %99. The outcome is unknown"},
      {exited(1, "can't find pane: %99\n"), TmuxEffect::created, ErrorCode::appleScriptExecutionFailed, false,
       "unknown whether the session was created"},
      // What a hook of the user's says of a file of its own.
      {exited(1, "/home/user/hook.conf: No such file or directory\n"), TmuxEffect::typed,
       ErrorCode::appleScriptExecutionFailed, false, "outcome is unknown"},
      {exited(1, "/home/user/hook.conf: Permission denied\n"), TmuxEffect::typed,
       ErrorCode::appleScriptExecutionFailed, false, "outcome is unknown"},
      {exited(1, "hook: Connection refused\n"), TmuxEffect::none, ErrorCode::appleScriptExecutionFailed, true,
       "tmux could not complete the operation: hook"},
      {{.end = End::timedOut},
       TmuxEffect::none,
       ErrorCode::terminalNotAvailable,
       true,
       "did not answer in time"},
      {{.end = End::timedOut},
       TmuxEffect::typed,
       ErrorCode::appleScriptExecutionFailed,
       false,
       "outcome is unknown"},
      {{.end = End::timedOut},
       TmuxEffect::created,
       ErrorCode::appleScriptExecutionFailed,
       false,
       "unknown whether"},
      {{.end = End::cancelled}, TmuxEffect::none, ErrorCode::terminalNotAvailable, true, "shutting down"},
      {{.end = End::outputTooLarge}, TmuxEffect::none, ErrorCode::outputUnavailable, true, "too large"},
      {{.end = End::notInstalled, .errorOutput = "The program tmux was not found."},
       TmuxEffect::none,
       ErrorCode::terminalNotAvailable,
       true,
       "The program tmux was not found."},
      {{.end = End::unsafeSocket, .errorOutput = "Another user's"},
       TmuxEffect::none,
       ErrorCode::automationPermissionDenied,
       false,
       "Another user's."},
  };
  for (const ErrorRow& row : rows) {
    const auto error = tmuxFailure(row.answer, row.effect);
    ASSERT_TRUE(error.has_value()) << row.part;
    EXPECT_EQ(error->code, row.code) << error->message;
    EXPECT_EQ(error->retryable, row.retryable) << error->message;
    EXPECT_NE(error->message.find(row.part), std::string::npos) << error->message;
    EXPECT_EQ(error->operation, "") << "the core knows it";
    EXPECT_FALSE(error->recoverySuggestion.empty()) << error->message;
    EXPECT_FALSE(error->session.has_value());
    EXPECT_EQ(error->message.find("Terminal.app"), std::string::npos) << error->message;
  }
}

TEST(TmuxErrors, WordsOfTmuxAreKeptShortAndWellFormed) {
  const auto error = tmuxFailure(exited(1, "\xff" + std::string(1'000, 'x')), TmuxEffect::none);
  EXPECT_LT(error->message.size(), 300u);
  EXPECT_NE(error->message.find("\xef\xbf\xbd"), std::string::npos);
}

TEST(TmuxErrors, KnowsAServerWithoutSessions) {
  EXPECT_TRUE(saysNoSessions(exited(1, "no current target\n")));
  EXPECT_FALSE(saysNoSessions(exited(1, "no server running on x\n")));
  EXPECT_FALSE(saysNoSessions({.end = End::timedOut}));
}

}  // namespace
}  // namespace velmora
