// Builds the whole bridge in one place and in one order: terminal adapter, registry, operation state,
// recorder, stores, coordinator, routers, sockets, servers. The application and the headless program are thin
// shells over it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "BridgeCore/BridgeCoordinator.h"
#include "BridgeHost/DataFolder.h"
#include "BridgeHost/OtherBridge.h"
#include "LocalControl/LocalControlRouter.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/PersonRouter.h"
#include "System/Environment.h"
#include "System/Log.h"

namespace velmora {

struct BridgeHostOptions {
  Environment environment{};
  /// Makes the terminal adapter, given the directory for its temporary files. When it throws, the stand-by
  /// adapter takes its place, so that the bridge still starts and says what is wrong.
  std::function<std::unique_ptr<TerminalAutomating>(const std::filesystem::path& temporaryDirectory)>
      makeTerminal{};
  /// Hears why the server accepts no more although nobody asked it to stop. Absent: nobody listens.
  AcceptingEnded acceptingEnded{};
  /// Hears that the user changed something through the socket for users. Called on any thread; must not
  /// throw.
  std::function<void()> changedByUser{};
  Log log{};
  Clock now = Date::now;
  UuidSource uuid = Uuid::random;
};

/// Belongs to one thread at a time, except for what its accessors hand out. The socket listens from
/// construction on and clients wait there; serving is to start once the coordinator has loaded the local
/// state, so that no request runs under settings that are not the user's. The data folder is locked before
/// anything is written, and as long as the host lives. Destruction ends the server first.
class BridgeHost {
 public:
  /// Throws std::runtime_error when the environment names no place for the settings.
  explicit BridgeHost(const BridgeHostOptions& options);
  ~BridgeHost();

  /// As the coordinator's; also deletes the history that a run which was cut short could not delete at its
  /// end.
  LocalStateProblems loadLocalState();

  /// Starts to serve, if the server could be made.
  void startServing();

  /// Makes the server anew, in place of one that accepts no more or that could not be made; `startServing` is
  /// to follow. Connections that are still being served end.
  void renewServer();

  /// Ends the server, then deletes the history or saves the end of it as the settings ask: `shown`, if the
  /// user sees any, as BridgeCoordinator::leaveHistory says. Requests under way are answered; after half a
  /// second the terminal's part in them is cut short.
  void prepareForTermination(const std::optional<PrivacyRetentionSettings>& shown = std::nullopt);

  BridgeCoordinator& coordinator() { return coordinator_; }
  TerminalAutomating& terminal() { return *terminal_; }
  /// Where the socket was made, or should have been; the server knows where it is by now.
  const std::filesystem::path& socketURL() const { return socketURL_; }

  /// Absent when the socket could not be made, or another bridge answers there or has the data folder;
  /// `serverProblem` says why. In the last case nothing can be saved either.
  LocalControlServer* localServer() { return localServer_.get(); }
  const std::string& serverProblem() const { return serverProblem_; }
  /// The one that answers in place of this one, or has the data folder.
  const std::optional<OtherBridge>& otherBridge() const { return otherBridge_; }
  /// As the function `endOtherBridge`, of the one that is found now; `renewServer` is to follow.
  void endOther(std::optional<pid_t> process);

 private:
  void endServing() noexcept;
  std::unique_ptr<LocalControlServer> makeServer();
  std::unique_ptr<LocalControlServer> makePersonServer();

  const Environment environment_;
  const std::filesystem::path socketURL_;
  const AcceptingEnded acceptingEnded_;
  const Log log_;
  DataFolder folder_;
  std::unique_ptr<TerminalAutomating> terminal_;
  SessionRegistry registry_;
  BridgeOperationState operationState_;
  RequestRecorder recorder_;
  HistoryStore historyStore_;
  PrivacySettingsStore settingsStore_;
  PermissionStore permissionStore_;
  PauseStore pauseStore_;
  BridgeCoordinator coordinator_;
  LocalControlRouter router_;
  PersonRouter personRouter_;
  std::string serverProblem_;
  std::optional<OtherBridge> otherBridge_;
  std::unique_ptr<LocalControlServer> localServer_;
  std::unique_ptr<LocalControlServer> personServer_;  // there whenever localServer_ is
};

}  // namespace velmora
