#include "tests/VelmoraApp/offline/Scenario.h"

#include <stdexcept>

#include "tests/support/FakeTime.h"

namespace velmora::testing {
namespace {

const ClientIdentitySummary kAgent{"Coding agent", "2.1.0"};
const ClientIdentitySummary kReviewer{"Review bot", "0.9"};

TerminalTabSnapshot namedTab(std::int64_t number, const std::string& title, bool busy = false) {
  auto snapshot = tab("/dev/pts/" + std::to_string(number), number, number, 1);
  snapshot.title = title;
  snapshot.busy = busy;
  return snapshot;
}

/// A request of `minutes` ago.
struct Request {
  double minutes;
  ToolName tool;
  RequestStatus status;
  std::string target{};
  std::string command{};
  std::string output{};
  std::string error{};
  ClientIdentitySummary client = kAgent;
};

MCPRequestRecord record(std::uint64_t number, const Request& request) {
  const Date received{scenarioTime().secondsSinceReferenceDate - request.minutes * 60};
  MCPRequestRecord result{.requestId = numberedUuid(number),
                          .receivedAt = received,
                          .client = request.client,
                          .toolName = request.tool,
                          .status = request.status};
  if (!request.target.empty()) {
    result.sessionSnapshot = {numberedUuid(number), request.target, "/dev/pts/1"};
  }
  if (request.status != RequestStatus::processing) {
    result.durationMilliseconds = 8 + static_cast<std::int64_t>(number % 7);
    result.completedAt = Date{received.secondsSinceReferenceDate + 0.01};
  }
  if (!request.command.empty()) {
    result.commandSummary = result.commandBody = request.command;
  }
  if (!request.output.empty()) {
    result.outputPreview = request.output;
  }
  if (!request.error.empty()) {
    result.error = StructuredError{.code = ErrorCode::sessionNotAllowed,
                                   .message = request.error,
                                   .operation = std::string(wireName(request.tool)),
                                   .recoverySuggestion = "Allow the session in Velmora."};
  }
  return result;
}

std::vector<MCPRequestRecord> records(const std::vector<Request>& requests) {
  std::vector<MCPRequestRecord> result;
  for (const auto& request : requests) {
    result.push_back(record(1000 + result.size(), request));
  }
  return result;
}

Scenario full() {
  using enum RequestStatus;
  return {
      .tabs = {namedTab(1, "velmora: zsh"), namedTab(2, "server: npm run dev", true),
               namedTab(3, "notes: vim README.md", true), namedTab(4, "한국어 문서 다듬기"),
               namedTab(5, "deploy@machine: ssh")},
      .permissions = {SessionPermission::managed, SessionPermission::readOnly, SessionPermission::managed,
                      SessionPermission::allowed, SessionPermission::blocked},
      .records = records({
          {61, ToolName::status, readComplete},
          {58, ToolName::listSessions, readComplete},
          {57, ToolName::readOutput, readComplete, "server: npm run dev", "",
           "> velmora@0.1.0 dev\n> vite --host\n\n  ready in 412 ms\n  local: http://localhost:5173/"},
          {40, ToolName::sendCommand, rejected, "deploy@machine: ssh", "", "",
           "This Terminal session is not allowed for the requested operation."},
          {31, ToolName::createSession, delivered},
          {30, ToolName::sendCommand, delivered, "velmora: zsh", "git switch -c mend-the-parser"},
          {24, ToolName::sendKey, delivered, "notes: vim README.md"},
          {12, ToolName::captureScreen, failed, "notes: vim README.md", "", "",
           "Terminal screen capture is unavailable."},
          {9, ToolName::focusSession, delivered, "한국어 문서 다듬기"},
          {6, ToolName::listSessions, readComplete, "", "", "", "", kReviewer},
          {4, ToolName::sendCommand, delivered, "velmora: zsh",
           "cmake --build --preset dev && ctest --preset dev --output-on-failure"},
          {2, ToolName::readOutput, readComplete, "velmora: zsh", "",
           "[312/312] Linking CXX executable bin/velmora-app\n100% tests passed, 0 tests failed out of 1286\n"
           "Total Test time (real) = 48.20 sec"},
          {0.1, ToolName::sendCommand, processing, "velmora: zsh"},
      }),
  };
}

Scenario longTexts() {
  const std::string title =
      "a title that somebody's prompt made of the whole path /home/user/projects/client/service/module and "
      "그리고 한국어로도 아주 길게 이어지는 제목";
  std::string output;
  for (int line = 1; line <= 200; ++line) {
    output += "line " + std::to_string(line) + " of the output\n";
  }
  return {.tabs = {namedTab(1, title, true), namedTab(2, title)},
          .permissions = {SessionPermission::readOnly},
          .records = records({{3, ToolName::readOutput, RequestStatus::readComplete, title, "", output},
                              {2, ToolName::sendCommand, RequestStatus::delivered, title,
                               "for file in *.txt; do " + std::string(400, 'x') + "; done"},
                              {1,
                               ToolName::getActiveSession,
                               RequestStatus::failed,
                               title,
                               "",
                               "",
                               "The terminal said something at length. " + std::string(300, 'y'),
                               {title, std::string(80, '9')}}})};
}

Scenario many() {
  Scenario result;
  for (std::int64_t number = 1; number <= 500; ++number) {
    result.tabs.push_back(namedTab(number, "session " + std::to_string(number), number % 5 == 0));
  }
  const auto some = full().records;
  for (std::uint64_t number = 0; number < 9990; ++number) {
    auto copy = some[number % some.size()];
    copy.requestId = numberedUuid(10000 + number);
    copy.receivedAt = Date{scenarioTime().secondsSinceReferenceDate - static_cast<double>(10000 - number)};
    if (copy.completedAt) {
      copy.completedAt = copy.receivedAt;
    }
    result.records.push_back(std::move(copy));
  }
  return result;
}

}  // namespace

Date scenarioTime() { return *Date::parseIso8601("2026-11-21T14:05:30Z"); }

Scenario scenario(const std::string& name) {
  if (name == "full") {
    return full();
  }
  if (name == "empty") {
    return {};
  }
  if (name == "long") {
    return longTexts();
  }
  if (name == "many") {
    return many();
  }
  if (name == "paused") {
    auto result = full();
    result.paused = true;
    return result;
  }
  if (name == "denied") {
    return {.denied = true};
  }
  if (name == "macOS" || name == "firstRun" || name == "firstRunMacOS") {
    auto result = full();
    result.firstRun = name != "macOS";
    result.terminalApp = name != "firstRun";
    return result;
  }
  if (name == "kept") {
    auto result = full();
    result.keepsTexts = true;
    return result;
  }
  if (name == "other" || name == "deaf") {
    auto result = full();
    result.otherBridge = name == "other";
    result.blockedSocket = name == "deaf";
    return result;
  }
  throw std::invalid_argument("no scenario " + name);
}

}  // namespace velmora::testing
