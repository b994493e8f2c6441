#include "BridgeCore/TerminalSessionService.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

bool saysNotRunning(const std::exception_ptr& error) {
  return StructuredErrorMapper::map(error, "", std::nullopt).code == ErrorCode::terminalNotRunning;
}

}  // namespace

TerminalSessionService::TerminalSessionService(TerminalAutomating& automation, SessionRegistry& registry,
                                               SessionPolicy policy, Clock now, PermissionMemory* memory,
                                               const WatchedTerminals* watched)
    : automation_(automation),
      registry_(registry),
      now_(std::move(now)),
      memory_(memory),
      watched_(watched),
      policy_(policy) {}

// Hands `use` the listing that `ask` queues for this call, when all earlier ones have reached the registry.
template <class Ask, class Use>
auto TerminalSessionService::withListing(std::string_view operation,
                                         const std::optional<SessionReference>& session, Ask ask, Use use) {
  std::optional<TurnOrder::Turn> turn;
  std::future<std::vector<TerminalTabSnapshot>> answer;
  {
    const MutexLock lock(queueing_);
    turn.emplace(order_);
    answer = ask();
  }
  std::vector<TerminalTabSnapshot> listing;
  try {
    listing = answerOf(std::move(answer), operation, session);
  } catch (...) {
    // Whatever was known has ended with the terminal; the status must not go on counting it.
    if (saysNotRunning(std::current_exception())) {
      turn->wait();
      registry_.reconcile({}, policy(), now_());
    }
    throw;
  }
  turn->wait();
  return use(listing);
}

void TerminalSessionService::setPolicy(SessionPolicy policy) {
  const MutexLock lock(mutex_);
  policy_ = policy;
}

std::vector<TerminalSession> TerminalSessionService::list(const ListSessionsInput& input,
                                                          const Caller& caller) {
  auto sessions = reconciled(wireName(ToolName::listSessions), caller);
  std::erase_if(sessions, [&](const TerminalSession& session) {
    return (session.permission == SessionPermission::readOnly && !input.includeReadOnly) ||
           (session.busy && !input.includeBusy);
  });
  if (caller.extended) addDetails(sessions, wireName(ToolName::listSessions), caller);
  return sessions;
}

void TerminalSessionService::addDetails(std::vector<TerminalSession>& sessions, std::string_view operation,
                                        const Caller& caller) {
  auto details = answerOf(automation_.tabDetails(caller), operation, std::nullopt);
  for (auto& session : sessions) {
    auto& known = details[session.tty];
    session.directory = std::move(known.directory);
    session.program = std::move(known.program);
    session.columns = known.columns;
    session.rows = known.rows;
    session.alternateScreen = known.alternateScreen;
    session.attached = known.attached;
    session.createdByBridge = session.bridgeCreated;
  }
}

TerminalSession TerminalSessionService::active(const Caller& caller) {
  const auto sessions = reconciled(wireName(ToolName::getActiveSession), caller);
  const auto selected =
      std::find_if(sessions.begin(), sessions.end(), [](const auto& s) { return s.selected; });
  if (selected == sessions.end()) throw catalogue::noSelectedTab();
  return *selected;
}

TerminalSession TerminalSessionService::create(const CreateSessionInput& input, const Caller& caller) {
  input.validate();
  WindowWish wish{
      .name = input.name, .directory = input.directory, .columns = input.columns, .rows = input.rows};
  auto opening =
      wish.isEmpty() ? automation_.createWindow(caller) : automation_.createWindowAs(std::move(wish), caller);
  const auto snapshot = answerOf(std::move(opening), wireName(ToolName::createSession), std::nullopt);
  // Listings that were asked for by now may have been taken before the window was there, and would retire it:
  // they go first.
  TurnOrder::Turn turn(order_);
  turn.wait();
  return registry_.registerCreated(snapshot, now_());
}

TerminalSession TerminalSessionService::validate(const Uuid& sessionId, std::string_view operation,
                                                 const Caller& caller) {
  // An id that the registry is going to refuse has no tab; whether the terminal answers at all comes first.
  const auto tty = registry_.ttyOf(sessionId);
  return withListing(
      operation, SessionReference{.sessionId = sessionId},
      [&] { return tty ? automation_.listTab(*tty, caller) : automation_.listSessions(caller); },
      [&](const auto& listing) { return asHeld(registry_.validate(sessionId, listing, now_())); });
}

TerminalSession TerminalSessionService::asHeld(TerminalSession session) const {
  return watched_ == nullptr ? session : watched_->asHeld(std::move(session));
}

std::optional<SessionState> TerminalSessionService::stateAfter(const Uuid& sessionId,
                                                               std::string_view operation,
                                                               const Caller& caller) {
  if (!caller.extended) return std::nullopt;
  try {
    return SessionState(validate(sessionId, operation, caller));
  } catch (const std::exception&) {
    return std::nullopt;  // the call itself is done
  } catch (const StructuredError&) {
    return std::nullopt;
  }
}

TerminalSession TerminalSessionService::focus(const Uuid& sessionId,
                                              const SessionPermissionService& permissions,
                                              const Caller& caller) {
  constexpr auto operation = wireName(ToolName::focusSession);
  auto session = validate(sessionId, operation, caller);
  if (!permissions.canFocus(session)) throw catalogue::sessionNotAllowed(operation, session.reference());
  answerOf(automation_.focus(session.tty, session.windowId, caller), operation, session.reference());
  return session;
}

std::vector<TerminalSession> TerminalSessionService::reconciled(std::string_view operation,
                                                                const Caller& caller) {
  return withListing(
      operation, std::nullopt, [&] { return automation_.listSessions(caller); },
      [&](const auto& listing) {
        auto found = registry_.reconcile(listing, policy(), now_());
        if (memory_ != nullptr) found = memory_->restricted(std::move(found), listing);
        for (auto& session : found) session = asHeld(std::move(session));
        return found;
      });
}

SessionPolicy TerminalSessionService::policy() const {
  const MutexLock lock(mutex_);
  return policy_;
}

}  // namespace velmora
