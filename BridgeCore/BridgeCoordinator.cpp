#include "BridgeCore/BridgeCoordinator.h"

#include <algorithm>
#include <tuple>

#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Text.h"
#include "BridgeModels/Tools.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

constexpr bool isFailure(ErrorCode code) {
  return code == ErrorCode::appleScriptExecutionFailed || code == ErrorCode::internalError;
}

// What is wrong with the terminal or a store, and not with the call.
constexpr bool isTrouble(ErrorCode code) {
  return isFailure(code) || code == ErrorCode::terminalNotAvailable ||
         code == ErrorCode::automationPermissionDenied || code == ErrorCode::outputUnavailable ||
         code == ErrorCode::screenCaptureUnavailable || code == ErrorCode::historyStorageFailed;
}

RequestStatus statusOf(const StructuredError& error) {
  return isFailure(error.code) ? RequestStatus::failed : RequestStatus::rejected;
}

// Whether both ask the same of the history.
bool keepAlike(const PrivacyRetentionSettings& one, const PrivacyRetentionSettings& other) {
  const auto asked = [](const PrivacyRetentionSettings& settings) {
    return std::tuple(settings.persistentHistoryEnabled, settings.storeCommandBody,
                      settings.storeOutputPreview, settings.deleteOnAppExit,
                      settings.outputPreviewMaxCharacters);
  };
  return asked(one) == asked(other);
}

// What a client calls itself can be as long as a frame, and every record holds it.
std::string shortened(std::string_view name) {
  constexpr std::int64_t mostCharacters = 200;
  constexpr std::size_t mostBytes = 8 * mostCharacters;
  return std::string(firstCharacters(firstBytes(name, mostBytes), mostCharacters));
}

ClientIdentitySummary shortened(const ClientIdentitySummary& client) {
  return {shortened(client.name), client.version ? std::optional(shortened(*client.version)) : std::nullopt};
}

}  // namespace

/// Who asked for what.
struct BridgeCoordinator::Call {
  const Uuid& requestId;
  const ClientIdentitySummary& client;
  ToolName tool;
  std::optional<Uuid> sessionId{};
  std::string_view input{};  ///< What is typed.
};

/// What the record and the log learn of a success besides its time.
struct BridgeCoordinator::Outcome {
  std::optional<std::string> command{};
  std::optional<std::string> output{};
  std::optional<std::int64_t> outputCharacterCount{};
  std::optional<bool> outputTruncated{};
  std::optional<Uuid> createdSession{};
};

template <class Payload>
struct BridgeCoordinator::Answer {
  Payload payload;
  std::vector<StructuredError> warnings{};
  Outcome outcome{};
};

BridgeCoordinator::BridgeCoordinator(TerminalAutomating& automation, SessionRegistry& registry,
                                     BridgeOperationState& operationState, RequestRecorder& recorder,
                                     PrivacySettingsStore& settingsStore, HistoryStore& historyStore,
                                     const Clock& now, Log log, PermissionStore* permissionStore,
                                     PauseStore* pauseStore)
    : automation_(automation),
      registry_(registry),
      operationState_(operationState),
      permissionMemory_(registry, permissionStore, log),
      statusService_(automation, operationState, registry, now, statusDeadline),
      sessionService_(automation, registry, SessionPolicy::safe, now, &permissionMemory_, &watchedTerminals_),
      permissionService_(registry, &permissionMemory_, &watchedTerminals_),
      commandService_(automation, sessionService_, permissionService_, operationState, settingsStore, now,
                      [this](const Uuid& session) { marker_.agentTypes(session); }),
      keyService_(automation, sessionService_, permissionService_, operationState, settingsStore, now,
                  [this](const Uuid& session) { marker_.agentTypes(session); }),
      outputService_(automation, sessionService_, permissionService_),
      captureService_(automation, sessionService_, permissionService_, now),
      recorder_(recorder),
      settingsStore_(settingsStore),
      historyStore_(historyStore),
      pauseStore_(pauseStore),
      marker_(automation, registry, operationState),
      now_(now),
      log_(std::move(log)) {}

ToolResult<StatusPayload> BridgeCoordinator::status(const Uuid& requestId,
                                                    const ClientIdentitySummary& client,
                                                    const Caller& /*caller*/) {
  auto result = run<StatusPayload>({requestId, client, ToolName::status},
                                   [&] { return Answer<StatusPayload>{{statusService_.snapshot()}}; });
  if (result.ok) statusService_.note(requestId, std::nullopt);
  return result;
}

ToolResult<SessionsPayload> BridgeCoordinator::listSessions(const Uuid& requestId,
                                                            const ClientIdentitySummary& client,
                                                            const ListSessionsInput& input,
                                                            const Caller& caller) {
  return run<SessionsPayload>({requestId, client, ToolName::listSessions},
                              [&] { return Answer<SessionsPayload>{{sessionService_.list(input, caller)}}; });
}

ToolResult<SessionPayload> BridgeCoordinator::activeSession(const Uuid& requestId,
                                                            const ClientIdentitySummary& client,
                                                            const Caller& caller) {
  return run<SessionPayload>({requestId, client, ToolName::getActiveSession},
                             [&] { return Answer<SessionPayload>{{sessionService_.active(caller)}}; });
}

ToolResult<SessionPayload> BridgeCoordinator::createSession(const Uuid& requestId,
                                                            const ClientIdentitySummary& client,
                                                            const CreateSessionInput& input,
                                                            const Caller& caller) {
  return run<SessionPayload>({requestId, client, ToolName::createSession}, [&] {
    auto session = sessionService_.create(input, caller);
    return Answer<SessionPayload>{{session}, {}, {.createdSession = session.sessionId}};
  });
}

ToolResult<CommandPayload> BridgeCoordinator::sendCommand(const Uuid& requestId,
                                                          const ClientIdentitySummary& client,
                                                          const SendCommandInput& input,
                                                          const Caller& caller) {
  return run<CommandPayload>({requestId, client, ToolName::sendCommand, input.sessionId, input.command}, [&] {
    return Answer<CommandPayload>{commandService_.send(input, caller), {}, {.command = input.command}};
  });
}

ToolResult<KeyPayload> BridgeCoordinator::sendKey(const Uuid& requestId, const ClientIdentitySummary& client,
                                                  const SendKeyInput& input, const Caller& caller) {
  auto keys = std::string(wireName(input.key));
  if (input.repeatCount != 1) keys += " x" + std::to_string(input.repeatCount);
  return run<KeyPayload>({requestId, client, ToolName::sendKey, input.sessionId, keys},
                         [&] { return Answer<KeyPayload>{keyService_.send(input, caller)}; });
}

ToolResult<OutputPayload> BridgeCoordinator::readOutput(const Uuid& requestId,
                                                        const ClientIdentitySummary& client,
                                                        const ReadOutputInput& input, const Caller& caller) {
  return run<OutputPayload>({requestId, client, ToolName::readOutput, input.sessionId}, [&] {
    auto [payload, warnings] = outputService_.read(input, caller);
    Outcome outcome{.outputCharacterCount = payload.returnedCharacters, .outputTruncated = payload.truncated};
    // A text can be long, and few users keep any of it.
    if (settingsStore_.current().storeOutputPreview) outcome.output = payload.text;
    return Answer<OutputPayload>{std::move(payload), std::move(warnings), std::move(outcome)};
  });
}

ToolResult<CapturePayload> BridgeCoordinator::captureScreen(const Uuid& requestId,
                                                            const ClientIdentitySummary& client,
                                                            const SessionTargetInput& input,
                                                            const Caller& caller) {
  return run<CapturePayload>({requestId, client, ToolName::captureScreen, input.sessionId},
                             [&] { return Answer<CapturePayload>{captureService_.capture(input, caller)}; });
}

ToolResult<FocusPayload> BridgeCoordinator::focusSession(const Uuid& requestId,
                                                         const ClientIdentitySummary& client,
                                                         const SessionTargetInput& input,
                                                         const Caller& caller) {
  return run<FocusPayload>({requestId, client, ToolName::focusSession, input.sessionId}, [&] {
    const auto session = sessionService_.focus(input.sessionId, permissionService_, caller);
    return Answer<FocusPayload>{{session.sessionId, now_()}};
  });
}

LocalStateProblems BridgeCoordinator::loadLocalState(bool formerRunWasCutShort) {
  const MutexLock order(settingsOrder_);
  LocalStateProblems problems;
  try {
    settingsStore_.load();
  } catch (...) {
    settingsAreUnreadable_ = true;
    problems.settings = problemSentence(std::current_exception());
  }
  const auto settings = settingsStore_.current();
  setSessionPolicy(settings.sessionPolicy);
  useInTerminal(settings);
  if (pauseIsKept()) {
    setPaused(true);
    log_.warning("start", "paused, as the user left it: " + pauseStore_->fileURL().string());
  }
  try {
    permissionMemory_.load();
  } catch (...) {
    problems.permissions = problemSentence(std::current_exception());
  }
  try {
    if (formerRunWasCutShort && settings.deleteOnAppExit && !problems.settings) historyStore_.delete_();
    if (settings.persistentHistoryEnabled) recorder_.restore(historyStore_.load());
  } catch (...) {
    problems.history = problemSentence(std::current_exception());
  }
  return problems;
}

void BridgeCoordinator::applySettings(const PrivacyRetentionSettings& settings) {
  const MutexLock order(settingsOrder_);
  apply(settings);
}

void BridgeCoordinator::adoptSessionPolicy(SessionPolicy policy) {
  const MutexLock order(settingsOrder_);
  setSessionPolicy(policy);
  auto settings = settingsStore_.load();  // what cannot be read is not replaced
  settings.sessionPolicy = policy;
  apply(settings);
}

void BridgeCoordinator::adoptBusyInput(bool allowed, bool allowedInOwn) {
  const MutexLock order(settingsOrder_);
  auto settings = settingsStore_.load();
  settings.allowBusySessionInput = allowed;
  settings.allowOwnBusySessionInput = allowedInOwn ? std::optional(true) : std::nullopt;
  apply(settings);
}

void BridgeCoordinator::apply(const PrivacyRetentionSettings& settings) {
  const auto before = settingsStore_.current();
  settingsStore_.save(settings);
  settingsAreUnreadable_ = false;
  const auto saved = settingsStore_.current();
  // Nobody can tell what is in a history that cannot be read.
  if ((before.storeCommandBody && !saved.storeCommandBody) ||
      (before.storeOutputPreview && !saved.storeOutputPreview))
    historyStore_.forgetUnreadable();
  setSessionPolicy(saved.sessionPolicy);
  useInTerminal(saved);
  recorder_.scrub(historyStore_, saved);
}

void BridgeCoordinator::useInTerminal(const PrivacyRetentionSettings& settings) {
  automation_.useSettings(settings);
  marker_.use(settings.tmuxMarks.value_or(false));
}

void BridgeCoordinator::clearHistory() {
  const MutexLock order(settingsOrder_);
  recorder_.clear(historyStore_);
}

void BridgeCoordinator::leaveHistory(const std::optional<PrivacyRetentionSettings>& shown) {
  const MutexLock order(settingsOrder_);
  const auto stored = settingsStore_.current();
  const auto settings = shown.value_or(stored);
  const bool wereSaved = keepAlike(settings, stored);
  if (settingsAreUnreadable_ && wereSaved) return;
  if (settings.deleteOnAppExit) return recorder_.clear(historyStore_);
  if (!wereSaved) return recorder_.scrub(historyStore_, settings);
  if (settings.persistentHistoryEnabled && recorder_.hasUnsavedChanges())
    recorder_.persist(historyStore_, settings);
}

void BridgeCoordinator::setPaused(bool paused) {
  operationState_.set(paused ? MCPState::paused : MCPState::active);
  marker_.look();
}

void BridgeCoordinator::holdPause(bool held) {
  pauseIsHeld_ = held;
  if (held) setPaused(true);
}

void BridgeCoordinator::keepPause() {
  const MutexLock order(pauseOrder_);
  if (pauseStore_ != nullptr) pauseStore_->keep(operationState_.current() == MCPState::paused);
}

bool BridgeCoordinator::pauseIsKept() {
  if (pauseStore_ == nullptr) return false;
  const MutexLock order(pauseOrder_);
  try {
    return pauseStore_->isKept();
  } catch (const std::exception& error) {
    log_.error("start", pauseStore_->fileURL().string() + ": " + error.what());
    return true;
  }
}

void BridgeCoordinator::setSessionPolicy(SessionPolicy policy) { sessionService_.setPolicy(policy); }

TerminalSession BridgeCoordinator::setPermission(SessionPermission permission, const Uuid& sessionId) {
  auto session = permissionService_.set(permission, sessionId);
  marker_.look();
  return session;
}

TerminalSession BridgeCoordinator::changeSessionPermission(SessionPermission permission,
                                                           const Uuid& sessionId) {
  return setPermission(permission, sessionId);
}

template <class Payload, class Work>
ToolResult<Payload> BridgeCoordinator::run(const Call& call, Work work) {
  const auto request = open(call);
  const auto& session = request.sessionSnapshot;
  try {
    if (toolTraits(call.tool).pauseComesFirst) {
      operationState_.requireMutationAllowed(wireName(call.tool), session);
    }
    Answer<Payload> answer = work();
    marker_.look();
    tellWatchers(call, request, close(call, answer.outcome), std::nullopt);
    return {.requestId = call.requestId,
            .ok = true,
            .data = std::move(answer.payload),
            .warnings = std::move(answer.warnings)};
  } catch (...) {  // nothing that reaches a client is an exception
    auto error = fail(call, std::current_exception(), session);
    tellWatchers(call, request, statusOf(error), error);
    return {.requestId = call.requestId, .ok = false, .error = std::move(error)};
  }
}

// Opens the record, and notes the call with the session that it names.
MCPRequestRecord BridgeCoordinator::open(const Call& call) {
  std::optional<SessionReference> session;
  if (call.sessionId) session = SessionReference{.sessionId = *call.sessionId};
  auto record = recorder_.begin(call.requestId, shortened(call.client), call.tool, session);
  if (call.sessionId) registry_.markRequest(*call.sessionId, record.receivedAt);
  return record;
}

RequestStatus BridgeCoordinator::close(const Call& call, const Outcome& outcome) {
  const auto traits = toolTraits(call.tool);
  if (traits.sensitive) {
    recorder_.setSensitiveContent(call.requestId, outcome.command, outcome.output, settingsStore_.current());
  }
  const auto status = traits.changesTerminal ? RequestStatus::delivered : RequestStatus::readComplete;
  recorder_.complete(call.requestId, status, outcome.outputCharacterCount, outcome.outputTruncated,
                     std::nullopt);
  if (traits.sensitive) recorder_.persist(historyStore_, settingsStore_);
  logChange(call, outcome.createdSession ? outcome.createdSession : call.sessionId,
            std::string(wireName(status)));
  return status;
}

StructuredError BridgeCoordinator::fail(const Call& call, const std::exception_ptr& error,
                                        const std::optional<SessionReference>& session) {
  auto mapped = StructuredErrorMapper::map(error, wireName(call.tool), session);
  const auto status = statusOf(mapped);
  recorder_.complete(call.requestId, status, std::nullopt, std::nullopt, mapped);
  statusService_.note(call.requestId, mapped);
  logChange(call, call.sessionId, std::string(wireName(status)) + ", " + std::string(wireName(mapped.code)));
  if (isTrouble(mapped.code))
    log_.warning("calls", std::string(wireName(call.tool)) + " failed: " + mapped.message);
  return mapped;
}

void BridgeCoordinator::tellWatchers(const Call& call, MCPRequestRecord request, RequestStatus status,
                                     const std::optional<StructuredError>& error) {
  if (!feed_.isWatched()) return;
  request.status = status;
  request.completedAt = now_();
  const double seconds =
      request.completedAt->secondsSinceReferenceDate - request.receivedAt.secondsSinceReferenceDate;
  request.durationMilliseconds = static_cast<std::int64_t>(std::max(seconds, 0.0) * 1000);
  request.error = error;
  feed_.tell(std::move(request), call.input);
}

void BridgeCoordinator::logChange(const Call& call, const std::optional<Uuid>& session,
                                  const std::string& outcome) const {
  if (!toolTraits(call.tool).changesTerminal) return;
  auto line = std::string(wireName(call.tool)) + " by " + quotedForLog(call.client.name);
  if (call.client.version) line += " " + quotedForLog(*call.client.version);
  if (session) line += ", session " + session->toString();
  log_.info("calls", line + ": " + outcome);
}

}  // namespace velmora
