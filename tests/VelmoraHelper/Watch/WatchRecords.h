// Made-up sessions and requests, as a bridge would tell of them: the same in every run.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "LocalControl/PersonMessages.h"
#include "tests/support/SampleRecords.h"
#include "tests/support/Utf8Locale.h"

namespace velmora::testing {

/// The zone and the character set that the widths and times of the tests count on.
inline void useWatchLocale() {
  ::setenv("TZ", "UTC", 1);
  ::tzset();
  useUtf8Locale();
}

inline PersonSession watchedSession(char digit, std::vector<std::string> targets, std::string title,
                                    SessionPermission permission, bool busy = false) {
  PersonSession named;
  named.session.sessionId = sampleId(digit);
  named.session.tty = std::string("/dev/pts/") + digit;
  named.session.title = std::move(title);
  named.session.permission = permission;
  named.session.busy = busy;
  named.targets = std::move(targets);
  return named;
}

inline std::vector<PersonSession> watchedSessions() {
  return {watchedSession('1', {"%0", "work:0.0"}, "work: bash", SessionPermission::managed),
          watchedSession('2', {"%5", "work:1.0"}, "빌드 — make -j 한국어 로그 보기",
                         SessionPermission::readOnly, true),
          watchedSession('3', {"%12", "deploy-production:3.1"}, "ssh \x1B]0;x\x07 e\u0301te\u0301\u202E gnp",
                         SessionPermission::blocked, true)};
}

/// The `number`th request, a second after the one before it, from 12:00:00 on. It ends before the next
/// begins, however long it says that it took.
inline MCPRequestRecord watchedRequest(int number, ToolName tool, std::optional<char> session,
                                       std::optional<std::string> command, std::int64_t milliseconds,
                                       std::optional<ErrorCode> error = {}) {
  constexpr double noon = 799'934'400;
  MCPRequestRecord request;
  request.requestId = *Uuid::parse("00000000-0000-4000-8000-00000000" + std::to_string(1000 + number));
  request.receivedAt = Date{noon + number};
  request.completedAt = Date{noon + number + 0.5};
  request.client = {number % 3 == 0 ? "codex" : "claude-code", "2.1.329"};
  request.toolName = tool;
  if (session) request.sessionSnapshot = SessionReference{.sessionId = sampleId(*session)};
  request.commandBody = std::move(command);
  request.status = error     ? RequestStatus::rejected
                   : command ? RequestStatus::delivered
                             : RequestStatus::readComplete;
  request.durationMilliseconds = milliseconds;
  if (error) {
    request.error = StructuredError{.code = *error,
                                    .message = "The session is not for agents.",
                                    .recoverySuggestion = "Ask the user, or use another session."};
  }
  return request;
}

inline std::vector<MCPRequestRecord> watchedRequests() {
  return {
      watchedRequest(1, ToolName::listSessions, {}, {}, 3),
      watchedRequest(2, ToolName::sendCommand, '1', "git status --short && git log --oneline | head -20", 4),
      watchedRequest(3, ToolName::readOutput, '1', {}, 1),
      watchedRequest(4, ToolName::sendCommand, '1', "cat <<'EOF' >메모.txt\n안녕하세요 \x1B[31m빨강\nEOF",
                     12'345),
      watchedRequest(5, ToolName::sendKey, '2', "interrupt x3", 2, ErrorCode::sessionNotAllowed),
      watchedRequest(6, ToolName::captureScreen, '3', {}, 0, ErrorCode::sessionNotAllowed),
      watchedRequest(7, ToolName::createSession, {}, {}, 250'000)};
}

}  // namespace velmora::testing
