#include "LocalControl/PersonRouter.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeCore/SessionNames.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/AnswerSize.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

// Leaves room for the envelope.
constexpr std::size_t mostHistoryBytes = LocalControlCodec::maximumPayloadSize - 4096;

constexpr std::chrono::seconds wordCounts{60};

// A user who has gone is noticed then; those who stay ask again.
constexpr std::chrono::seconds longestWait{5};

StructuredError refused(
    const std::string& message,
    const std::string& suggestion = "Ask anew, and type the word that appears on your terminal.") {
  return {.code = ErrorCode::sessionNotAllowed, .message = message, .recoverySuggestion = suggestion};
}

PersonSession named(TerminalSession session) {
  auto targets = session.targets;
  return {.session = std::move(session), .targets = std::move(targets)};
}

template <class Input>
Input inputOf(const PersonCall<JsonMembers>& call) {
  Input input{};
  JsonReader(*call.arguments.value).read(input);
  return input;
}

template <class Payload>
std::string encoded(const PersonCall<JsonMembers>& call, Payload payload) {
  return encodeJson(ToolResult<Payload>{.requestId = call.requestId, .ok = true, .data = std::move(payload)});
}

std::string refusal(const PersonCall<JsonMembers>& call, StructuredError error) {
  return encodeJson(LocalControlResponse{.requestId = call.requestId, .error = std::move(error)});
}

}  // namespace

std::string PersonRouter::answer(std::string_view request, const Caller& caller, PersonPeer& peer) {
  return withJson(request, [&](const boost::json::value& document) {
    Call call;
    JsonReader(document).read(call);
    const auto verb = wireName(call.operation);
    if (call.protocolVersion != localControlProtocolVersion) {
      return refusal(call, StructuredErrorMapper::invalidArgument(unsupportedProtocolVersionMessage, verb,
                                                                  std::nullopt));
    }
    try {
      auto response = responseTo(call, caller, peer);
      if (response.size() <= LocalControlCodec::maximumPayloadSize) return response;
      return refusal(call, answerTooLarge(verb, response.size()));
    } catch (...) {
      return refusal(call, StructuredErrorMapper::map(std::current_exception(), verb, std::nullopt));
    }
  });
}

std::string PersonRouter::responseTo(const Call& call, const Caller& caller, PersonPeer& peer) {
  switch (call.operation) {
    case PersonVerb::status:
      return encoded(call, PersonStatus{coordinator_.statusService().snapshot(), limits()});
    case PersonVerb::sessions:
      return encoded(call, sessions(caller));
    case PersonVerb::history:
      return encoded(call, history(inputOf<HistoryInput>(call), caller));
    case PersonVerb::pause:
      return setPaused(call, true);
    case PersonVerb::resume:
      return resume(call, caller, peer);
    case PersonVerb::permit:
      return permit(call, caller, peer);
    case PersonVerb::policy:
      return changePolicy(call, caller, peer);
    case PersonVerb::busyInput:
      return changeBusyInput(call, caller, peer);
    case PersonVerb::confirm:
      return confirm(call, caller, peer);
    case PersonVerb::events:
      return encoded(call, events(peer));
    case PersonVerb::watch:
      return encoded(call, watch(peer));
  }
  throw std::logic_error("a verb without an answer");
}

PersonLimits PersonRouter::limits() {
  const auto settings = coordinator_.settingsStore().current();
  return {.paused = coordinator_.operationState().current() == MCPState::paused,
          .sessionPolicy = coordinator_.sessionService().policy(),
          .allowBusySessionInput = settings.allowBusySessionInput,
          .allowOwnBusySessionInput =
              settings.allowOwnBusySessionInput.value_or(false) ? std::optional(true) : std::nullopt};
}

PersonSessions PersonRouter::sessions(const Caller& caller) {
  PersonSessions payload;
  for (auto& session : coordinator_.sessionService().list({}, caller))
    payload.sessions.push_back(named(std::move(session)));
  return payload;
}

PersonHistory PersonRouter::history(const HistoryInput& input, const Caller& caller) {
  HistoryFilter filter{.tool = input.tool};
  if (input.session) {
    const auto id = Uuid::parse(*input.session);
    filter.sessionId = id ? *id : find(*input.session, caller).sessionId;
  }
  auto records = HistoryQueryService::filter(coordinator_.recorder().snapshot(), filter);
  if (input.since)
    std::erase_if(records, [&](const auto& record) { return record.receivedAt < *input.since; });
  std::reverse(records.begin(), records.end());
  PersonHistory payload;
  std::size_t bytes = 0;
  for (auto& record : records) {
    bytes += encodeJson(record).size() + 1;
    payload.more = bytes > mostHistoryBytes;
    if (payload.more) break;
    payload.records.push_back(std::move(record));
  }
  return payload;
}

// The first answer comes at once, so that the peer knows that it hears everything from now on.
PersonEvents PersonRouter::events(PersonPeer& peer) {
  if (!peer.watcher) {
    try {
      peer.watcher = std::make_unique<RequestFeed::Watcher>(coordinator_.feed());
      return {};
    } catch (const TooManyWatchers&) {
      throw StructuredError{.code = ErrorCode::bridgeUnavailable,
                            .message = std::to_string(RequestFeed::mostWatchers) +
                                       " others watch what agents ask, and no more can.",
                            .retryable = true,
                            .recoverySuggestion = "Close another `velmora watch`, and start this one again."};
    }
  }
  auto seen = peer.watcher->next(longestWait);
  return {std::move(seen.requests), seen.missed};
}

// Who draws a screen for the user says so itself; a terminal that is no session's is held for nothing. A
// process keeps no terminal that has ended, so the hold does not pass on with its name.
PersonWatch PersonRouter::watch(PersonPeer& peer) {
  const auto process = presence_.lookUp(peer.process);
  if (!process || !process->terminal) {
    throw StructuredError{.code = ErrorCode::sessionNotAllowed,
                          .message = "The process that asks has no terminal.",
                          .recoverySuggestion = "Run `velmora watch` in a terminal."};
  }
  const auto tty = process->terminal->string();
  peer.hold = std::make_unique<WatchedTerminals::Hold>(
      coordinator_.watchedTerminals(), tty, [this, id = peer.process, before = *process] {
        const auto now = presence_.lookUp(id);
        if (!now || now->terminal != before.terminal) return false;
        // The ticks stay the same when the system's clock is set, and the time does not.
        return before.startTicks != 0 ? now->startTicks == before.startTicks
                                      : now->startedAt == before.startedAt;
      });
  log_.info("calls", "agents are refused " + tty + ", where the user watches with process " +
                         std::to_string(peer.process) + ", " + quotedForLog(process->name));
  return {tty};
}

std::string PersonRouter::setPaused(const Call& call, bool paused) {
  coordinator_.setPaused(paused);
  tell(paused ? "paused" : "resumed");
  ToolResult<PersonLimits> result{.requestId = call.requestId, .ok = true, .data = limits()};
  try {
    coordinator_.keepPause();
  } catch (...) {
    auto warning = storageError(StorageFailure::pauseUnsaved);
    log_.error("calls", warning.message + " " + problemSentence(std::current_exception()));
    result.warnings.push_back(std::move(warning));
  }
  return encodeJson(result);
}

std::string PersonRouter::resume(const Call& call, const Caller& caller, PersonPeer& peer) {
  if (!limits().paused) return encoded(call, limits());
  if (coordinator_.pauseIsHeld()) {
    throw StructuredError{.code = ErrorCode::sessionNotAllowed,
                          .message = "Velmora's window waits for you to choose what agents may do.",
                          .recoverySuggestion = "Answer the introduction in the window; that resumes."};
  }
  return ask(call, caller, peer, "agents could type and open windows again.",
             [this](const Call& granted) { return setPaused(granted, false); });
}

std::string PersonRouter::permit(const Call& call, const Caller& caller, PersonPeer& peer) {
  const auto input = inputOf<PermitInput>(call);
  const auto found = find(input.session, caller);
  const auto change =
      "session " + found.sessionId.toString() + " is " + std::string(wireName(input.permission));
  if (auto session = coordinator_.permissionService().tighten(input.permission, found.sessionId)) {
    tell(change);
    return encoded(call, named(*std::move(session)));
  }
  const std::string gain = input.permission == SessionPermission::readOnly ? "read" : "read and type into";
  return ask(call, caller, peer, "agents could " + gain + " \"" + plainText(found.title) + "\".",
             [this, input, change, id = found.sessionId](const Call& granted) {
               auto session = coordinator_.setPermission(input.permission, id);
               tell(change);
               return encoded(granted, named(std::move(session)));
             });
}

std::string PersonRouter::changePolicy(const Call& call, const Caller& caller, PersonPeer& peer) {
  const auto policy = inputOf<PolicyInput>(call).policy;
  const auto adopt = [this, policy](const Call& granted) {
    coordinator_.adoptSessionPolicy(policy);
    tell("session policy " + std::string(wireName(policy)));
    return encoded(granted, limits());
  };
  if (policy == SessionPolicy::selective) return adopt(call);
  if (limits().sessionPolicy == policy) return encoded(call, limits());
  return ask(call, caller, peer, "agents could type into every session that is found from now on.", adopt);
}

std::string PersonRouter::changeBusyInput(const Call& call, const Caller& caller, PersonPeer& peer) {
  const auto before = limits();
  const bool ownBefore = before.allowOwnBusySessionInput.value_or(false);
  const auto input = inputOf<BusyInputInput>(call);
  const bool allowed = input.allowed;
  const bool own = input.own.value_or(allowed && ownBefore);
  const auto adopt = [this, allowed, own](const Call& granted) {
    coordinator_.adoptBusyInput(allowed, own);
    tell(std::string("input to busy sessions is ") + (allowed ? "allowed"
                                                      : own   ? "allowed in windows that agents opened"
                                                              : "refused"));
    return encoded(granted, limits());
  };
  if (allowed == before.allowBusySessionInput && own == ownBefore && (allowed || own))
    return encoded(call, limits());
  if (allowed && !before.allowBusySessionInput)
    return ask(call, caller, peer, "agents could type into programs that run.", adopt);
  if (own && !ownBefore && !before.allowBusySessionInput)
    return ask(call, caller, peer, "agents could type into programs that run in windows that they opened.",
               adopt);
  return adopt(call);
}

// The system's own authority asks instead, where there is one: a password is more than a word.
// The word goes to the terminal and never to the peer: who only runs commands there cannot read it.
std::string PersonRouter::ask(const Call& call, const Caller& caller, PersonPeer& peer,
                              const std::string& what, std::function<std::string(const Call&)> grant) {
  peer.wish.reset();
  if (const auto isAllowed = presence_.authority(peer.process)) {
    if (!*isAllowed || caller.hasLeft())
      throw refused("It was not allowed in the dialogue of the system.", "Nothing was changed.");
    log_.info("calls", "allowed in the dialogue of the system");
    return grant(call);
  }
  auto terminal = terminalOf(peer, caller);
  auto word = presence_.newWord();
  try {
    presence_.show(terminal, "\r\nVelmora: " + what + "\r\nTo allow it, type this word: " + word + "\r\n");
  } catch (const std::system_error& error) {
    throw refused("Nothing can be shown on " + terminal.string() + ": " + error.what() + ".");
  }
  log_.info("calls", "the user's word is asked for on " + terminal.string());
  auto answer = encoded(call, PersonChallenge{terminal.string(), wordCounts.count()});
  peer.wish = {std::move(terminal), std::move(word), presence_.now() + wordCounts, std::move(grant)};
  return answer;
}

// One try a word.
std::string PersonRouter::confirm(const Call& call, const Caller& caller, PersonPeer& peer) {
  const auto wish = std::exchange(peer.wish, std::nullopt);
  if (!wish) throw refused("There is nothing to confirm.");
  if (presence_.now() > wish->until) throw refused("The word counts for a minute, which is over.");
  if (terminalOf(peer, caller) != wish->terminal) throw refused("The terminal has changed meanwhile.");
  if (inputOf<ConfirmInput>(call).word != wish->word) throw refused("That is not the word that was shown.");
  return wish->grant(call);
}

std::filesystem::path PersonRouter::terminalOf(const PersonPeer& peer, const Caller& caller) {
  std::set<std::string> driven;
  for (const auto& session : coordinator_.registry().currentSessions()) driven.insert(session.tty);
  try {
    for (const auto& session : coordinator_.sessionService().list({}, caller)) driven.insert(session.tty);
  } catch (...) {
    const auto error = StructuredErrorMapper::map(std::current_exception(), "", std::nullopt);
    if (error.code != ErrorCode::terminalNotRunning) throw;
  }
  return ownTerminalOf(peer.process, presence_.lookUp, driven);
}

// What the registry knows comes first: a session must be withheld at once, also while the terminal hangs.
TerminalSession PersonRouter::find(const std::string& name, const Caller& caller) {
  try {
    return sessionNamed(name, coordinator_.registry().currentSessions());
  } catch (const StructuredError& error) {
    if (error.code != ErrorCode::sessionNotFound) throw;
  }
  return sessionNamed(name, coordinator_.sessionService().list({}, caller));
}

void PersonRouter::tell(const std::string& change) {
  log_.info("calls", "by the user: " + change);
  coordinator_.marker().look();
  if (changed_) changed_();
}

}  // namespace velmora
