// The bridge from the router down, over a fake terminal of ten tabs that answers at once.
#pragma once

#include "BridgeCore/BridgeCoordinator.h"
#include "LocalControl/LocalControlRouter.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {

struct FakeBridge {
  FakeBridge() {
    for (int number = 1; number <= 10; ++number) {
      terminal.tabs.push_back(testing::tab("/dev/pts/" + std::to_string(number), number, number));
    }
    const std::string line = "drwxr-xr-x 2 me staff 4096 Nov 21 07:26 a folder\n";
    while (terminal.output.text.size() < 12000) terminal.output.text += line;
    terminal.output.text.resize(12000);
    terminal.output.originalCharacterCount = 12000;
    const auto listed = coordinator.listSessions(Uuid::random(), {"benchmark", std::nullopt}, {});
    sessionId = listed.data.value().sessions.front().sessionId;
  }

  LocalControlRequest request(ToolName tool, JSONObject arguments = {}) const {
    return {.requestId = Uuid::random(),
            .client = {"benchmark", "1.0", 1},
            .operation = tool,
            .arguments = std::move(arguments)};
  }
  LocalControlRequest ofAnotherVersion() const {
    auto other = request(ToolName::status);
    other.protocolVersion = 2;
    return other;
  }
  LocalControlRequest withBadArguments() const {
    return request(ToolName::sendKey, {{"sessionId", sessionId.toString()}, {"key", "Escape"}});
  }

  TemporaryDirectory directory;
  PosixFileSystem files;
  testing::FakeTerminal terminal;
  SessionRegistry registry{Uuid::random(), Uuid::random};
  BridgeOperationState state{MCPState::active};
  RequestRecorder recorder{Date::now};
  PrivacySettingsStore settings{files, directory / "settings.json", {}};
  HistoryStore history{files, directory / "history.json"};
  const Log log{
      [](LogLevel, std::string_view, std::string_view) {}};  // lines are made, and nobody writes them
  BridgeCoordinator coordinator{terminal, registry, state, recorder, settings, history, Date::now, log};
  LocalControlRouter router{coordinator};
  Uuid sessionId;
};

}  // namespace velmora
