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
                                               SessionPolicy policy, Clock now, PermissionMemory* memory)
    : automation_(automation), registry_(registry), now_(std::move(now)), memory_(memory), policy_(policy) {}

// Hands `use` a listing taken for this call, when all earlier ones have reached the registry.
template <class Use>
auto TerminalSessionService::withListing(std::string_view operation,
                                         const std::optional<SessionReference>& session, const Caller& caller,
                                         Use use) {
  std::optional<TurnOrder::Turn> turn;
  std::future<std::vector<TerminalTabSnapshot>> answer;
  {
    const MutexLock lock(queueing_);
    turn.emplace(order_);
    answer = automation_.listSessions(caller);
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
  return sessions;
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
  const auto snapshot =
      answerOf(automation_.createWindow(caller), wireName(ToolName::createSession), std::nullopt);
  // Listings that were asked for by now may have been taken before the window was there, and would retire it:
  // they go first.
  TurnOrder::Turn turn(order_);
  turn.wait();
  return registry_.registerCreated(snapshot, now_());
}

TerminalSession TerminalSessionService::validate(const Uuid& sessionId, std::string_view operation,
                                                 const Caller& caller) {
  return withListing(operation, SessionReference{.sessionId = sessionId}, caller,
                     [&](const auto& listing) { return registry_.validate(sessionId, listing, now_()); });
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
  return withListing(operation, std::nullopt, caller, [&](const auto& listing) {
    auto found = registry_.reconcile(listing, policy(), now_());
    return memory_ == nullptr ? found : memory_->restricted(std::move(found), listing);
  });
}

SessionPolicy TerminalSessionService::policy() const {
  const MutexLock lock(mutex_);
  return policy_;
}

}  // namespace velmora
