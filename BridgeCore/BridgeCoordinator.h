// The single entry point of the bridge core: one operation a tool call. It opens a request record, runs the
// owning service, closes the record with its outcome, and writes the history after the two operations whose
// content is sensitive. It also knows in which order the user's settings and history are loaded, changed and
// left at the end. It decides the order of the steps; the services and the stores do the work.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "BridgeCore/BridgeOperationState.h"
#include "BridgeCore/BridgeStatusService.h"
#include "BridgeCore/Delivery.h"
#include "BridgeCore/HistoryStore/HistoryStore.h"
#include "BridgeCore/HistoryStore/PauseStore.h"
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeCore/HistoryStore/RequestRecorder.h"
#include "BridgeCore/Reading.h"
#include "BridgeCore/RequestFeed.h"
#include "BridgeCore/SessionPermissionService.h"
#include "BridgeCore/SessionRegistry.h"
#include "BridgeCore/TerminalMarker.h"
#include "BridgeCore/TerminalSessionService.h"
#include "BridgeCore/WatchedTerminals.h"
#include "BridgeModels/Caller.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/ToolPayloads.h"
#include "System/Log.h"
#include "System/Mutex.h"
#include "TerminalAutomation/TerminalAutomating.h"

namespace velmora {

/// How long a status request waits for the terminal.
inline constexpr std::chrono::seconds statusDeadline{5};

/// What could not be loaded, and why, in a sentence for the user.
struct LocalStateProblems {
  std::optional<std::string> settings{};
  std::optional<std::string> history{};
  std::optional<std::string> permissions{};  ///< Sessions are found as readOnly at best then.
};

/// Thread-safe. Tool calls take no lock of its own: those of different requests meet only in the monitors it
/// is built over. What it is given must outlive it. No tool operation throws; a failure travels inside the
/// result. The log gets a line for each call that changes something, and one for each failure of the terminal
/// or a store. Without a permission store, what the user sets for a session ends with the run; without a
/// pause store a pause does.
class BridgeCoordinator {
 public:
  BridgeCoordinator(TerminalAutomating& automation, SessionRegistry& registry,
                    BridgeOperationState& operationState, RequestRecorder& recorder,
                    PrivacySettingsStore& settingsStore, HistoryStore& historyStore, const Clock& now,
                    Log log = {}, PermissionStore* permissionStore = nullptr,
                    PauseStore* pauseStore = nullptr);

  // The nine tools. `requestId` is the caller's; `client` is who calls. Nothing is begun in the
  // terminal once `caller` has left; the status, which changes nothing and never waits long, looks at none.
  ToolResult<StatusPayload> status(const Uuid& requestId, const ClientIdentitySummary& client,
                                   const Caller& /*caller*/ = {});
  ToolResult<SessionsPayload> listSessions(const Uuid& requestId, const ClientIdentitySummary& client,
                                           const ListSessionsInput& input, const Caller& caller = {});
  ToolResult<SessionPayload> activeSession(const Uuid& requestId, const ClientIdentitySummary& client,
                                           const Caller& caller = {});
  ToolResult<SessionPayload> createSession(const Uuid& requestId, const ClientIdentitySummary& client,
                                           const CreateSessionInput& input, const Caller& caller = {});
  ToolResult<CommandPayload> sendCommand(const Uuid& requestId, const ClientIdentitySummary& client,
                                         const SendCommandInput& input, const Caller& caller = {});
  ToolResult<KeyPayload> sendKey(const Uuid& requestId, const ClientIdentitySummary& client,
                                 const SendKeyInput& input, const Caller& caller = {});
  ToolResult<OutputPayload> readOutput(const Uuid& requestId, const ClientIdentitySummary& client,
                                       const ReadOutputInput& input, const Caller& caller = {});
  ToolResult<CapturePayload> captureScreen(const Uuid& requestId, const ClientIdentitySummary& client,
                                           const SessionTargetInput& input, const Caller& caller = {});
  ToolResult<FocusPayload> focusSession(const Uuid& requestId, const ClientIdentitySummary& client,
                                        const SessionTargetInput& input, const Caller& caller = {});

  // The user's settings and history. These run one after the other.

  /// Loads the settings, the sessions' permissions and, when the user keeps one, the history. What cannot be
  /// read keeps its default and stays on disk; nothing is thrown. After a run that was cut short, a history
  /// that was to be deleted at its end is deleted instead. A pause that was kept holds again.
  LocalStateProblems loadLocalState(bool formerRunWasCutShort = false);
  /// Saves the settings; then the session policy and what they say of the terminal hold, and what they no
  /// longer allow to be kept is removed. Throws what PrivacySettingsStore::save throws (nothing has changed
  /// then), and the storage error of the history.
  void applySettings(const PrivacyRetentionSettings& settings);
  /// Changes the session policy and nothing else of what is stored. The policy holds even when it cannot be
  /// saved. Throws what loading and applySettings throw.
  void adoptSessionPolicy(SessionPolicy policy);
  /// Allows or refuses input to busy sessions, all of them or the bridge's own, and changes nothing else of
  /// what is stored. Throws what loading and applySettings throw.
  void adoptBusyInput(bool allowed, bool allowedInOwn);
  /// Empties the recorder, then deletes the history file. Throws the storage error when the file stays.
  void clearHistory();
  /// For the end of the run: deletes the history when the settings ask for it, else saves what came since the
  /// last save when it is kept. `shown` are the settings that the user sees; where they ask something else of
  /// the history than the stored ones, because these could not be saved, the user's word counts. Settings
  /// that could not be read ask for nothing. Throws the storage error.
  void leaveHistory(const std::optional<PrivacyRetentionSettings>& shown = std::nullopt);

  // For the user. None of these leaves a record.
  void setPaused(bool paused);  ///< For this run; only a flag, and at once.
  /// Makes the stored pause agree with the switch, so that the user's pause outlives the run. Throws
  /// std::system_error and the storage error; the switch stays as it is then.
  void keepPause();
  bool pauseIsKept();  ///< Also when nobody can tell.
  /// A pause that only who made it ends: until the window's introduction is answered, no command of the
  /// user's resumes. Ends without resuming.
  void holdPause(bool held);
  bool pauseIsHeld() const { return pauseIsHeld_; }
  void setSessionPolicy(SessionPolicy policy);
  /// Throws the registry's not found and stale errors.
  TerminalSession setPermission(SessionPermission permission, const Uuid& sessionId);
  TerminalSession changeSessionPermission(SessionPermission permission, const Uuid& sessionId);

  SessionRegistry& registry() { return registry_; }
  BridgeOperationState& operationState() { return operationState_; }
  BridgeStatusService& statusService() { return statusService_; }
  TerminalSessionService& sessionService() { return sessionService_; }
  SessionPermissionService& permissionService() { return permissionService_; }
  CommandService& commandService() { return commandService_; }
  KeyService& keyService() { return keyService_; }
  OutputService& outputService() { return outputService_; }
  CaptureService& captureService() { return captureService_; }
  RequestRecorder& recorder() { return recorder_; }
  RequestFeed& feed() { return feed_; }
  WatchedTerminals& watchedTerminals() { return watchedTerminals_; }
  TerminalMarker& marker() { return marker_; }
  PrivacySettingsStore& settingsStore() { return settingsStore_; }
  HistoryStore& historyStore() { return historyStore_; }

 private:
  struct Call;
  struct Outcome;
  template <class Payload>
  struct Answer;

  template <class Payload, class Work>
  ToolResult<Payload> run(const Call& call, Work work);
  MCPRequestRecord open(const Call& call);
  RequestStatus close(const Call& call, const Outcome& outcome);
  StructuredError fail(const Call& call, const std::exception_ptr& error,
                       const std::optional<SessionReference>& session);
  void tellWatchers(const Call& call, MCPRequestRecord request, RequestStatus status,
                    const std::optional<StructuredError>& error);
  void logChange(const Call& call, const std::optional<Uuid>& session, const std::string& outcome) const;
  void apply(const PrivacyRetentionSettings& settings) VELMORA_REQUIRES(settingsOrder_);
  void useInTerminal(const PrivacyRetentionSettings& settings);

  TerminalAutomating& automation_;
  SessionRegistry& registry_;
  BridgeOperationState& operationState_;
  PermissionMemory permissionMemory_;
  WatchedTerminals watchedTerminals_;
  BridgeStatusService statusService_;
  TerminalSessionService sessionService_;
  SessionPermissionService permissionService_;
  CommandService commandService_;
  KeyService keyService_;
  OutputService outputService_;
  CaptureService captureService_;
  RequestRecorder& recorder_;
  RequestFeed feed_;
  PrivacySettingsStore& settingsStore_;
  HistoryStore& historyStore_;
  PauseStore* const pauseStore_;
  std::atomic<bool> pauseIsHeld_ = false;
  TerminalMarker marker_;
  const Clock now_;
  const Log log_;

  Mutex settingsOrder_;  // held across a whole change, so that policy and files follow the same order
  bool settingsAreUnreadable_ VELMORA_GUARDED_BY(settingsOrder_) = false;
  Mutex pauseOrder_;  // held while the pause is stored, so that the file agrees with the switch pressed last
};

}  // namespace velmora
