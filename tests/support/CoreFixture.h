// The services of the bridge core over a fake terminal, a fake clock, counted ids and a temporary folder.
#pragma once

#include <gtest/gtest.h>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeCore/TerminalSessionService.h"
#include "tests/support/FakeTerminal.h"
#include "tests/support/FakeTime.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

class CoreFixture : public ::testing::Test {
 protected:
  /// Registers the terminal's one tab and returns its id.
  Uuid registerTab(SessionPermission permission = SessionPermission::managed) {
    terminal.tabs = {tab("/dev/ttys001", 11)};
    const auto id = sessions.list({})[0].sessionId;
    registry.setPermission(permission, id);
    return id;
  }

  void allowBusyInput() {
    auto settings = settingsStore.current();
    settings.allowBusySessionInput = true;
    settingsStore.save(settings);
  }

  TemporaryDirectory directory;
  PosixFileSystem files;
  FakeTerminal terminal;
  FakeTime time;
  BridgeOperationState state{MCPState::active};
  SessionRegistry registry{numberedUuid(7777), countingUuids()};
  PrivacySettingsStore settingsStore{files, directory.path() / "Velmora" / "settings.json", {}};
  SessionPermissionService permissions{registry};
  TerminalSessionService sessions{terminal, registry, SessionPolicy::safe, time.clock()};
};

}  // namespace velmora::testing
