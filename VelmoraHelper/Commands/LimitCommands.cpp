#include "VelmoraHelper/Commands/LimitCommands.h"

#include <ostream>

#include "System/Utf8.h"
#include "VelmoraHelper/Commands/CallCommand.h"
#include "VelmoraHelper/Commands/PersonCalls.h"
#include "VelmoraHelper/Commands/SessionsCommand.h"

namespace velmora {

namespace {

template <class Payload, class Words>
ExitStatus change(const CommandContext& context, PersonVerb verb, JSONObject arguments, const Words& words) {
  const auto calls = context.person();
  const auto deadline = verb == PersonVerb::pause ? personDeadline : userDeadline;
  auto response = confirmed(context, *calls, calls->call(verb, std::move(arguments), deadline));
  const auto answer = personAnswer<Payload>(std::move(response), verb);
  for (const auto& warning : answer.warnings) explain(context, warning);
  if (answer.error) {
    explain(context, *answer.error);
    return ExitStatus::failure;
  }
  context.out << words(answer.payload) << '\n';
  return ExitStatus::success;
}

const char* inWords(SessionPermission permission) {
  switch (permission) {
    case SessionPermission::managed:
    case SessionPermission::allowed:
      return "agents read it and type into it";
    case SessionPermission::readOnly:
      return "agents read it and do not type into it";
    case SessionPermission::blocked:
      break;
  }
  return "agents neither read it nor type into it";
}

std::string inWords(SessionPolicy policy) {
  const std::string found = policy == SessionPolicy::safe ? "managed" : "read-only";
  return "Session policy: " + std::string(wireName(policy)) + ". Sessions found from now on are " + found +
         "; those that are known keep their permission.";
}

}  // namespace

LocalControlResponse confirmed(const CommandContext& context, PersonCalling& calls,
                               LocalControlResponse response) {
  if (!response.ok || !response.data || response.data->find("wordShownOn") == nullptr) return response;
  const auto challenge = decodeJson<PersonChallenge>(encodeJson(*response.data));
  const auto word = context.askUser("Word: ", std::chrono::seconds(challenge.seconds));
  if (word) return calls.call(PersonVerb::confirm, argumentsOf(ConfirmInput{*word}), personDeadline);
  return {.error = StructuredError{.code = ErrorCode::sessionNotAllowed,
                                   .message = "No word was typed.",
                                   .recoverySuggestion = "Nothing was changed."}};
}

ExitStatus pauseBridge(const CommandContext& context) {
  return change<PersonLimits>(context, PersonVerb::pause, {}, [](const PersonLimits&) {
    return "Paused: agents type nothing and open nothing until you resume.";
  });
}

ExitStatus resumeBridge(const CommandContext& context) {
  return change<PersonLimits>(context, PersonVerb::resume, {}, [](const PersonLimits&) {
    return "Not paused: agents type and open windows as far as permissions allow.";
  });
}

ExitStatus permitSession(const CommandContext& context, const std::string& session,
                         SessionPermission permission) {
  return change<PersonSession>(context, PersonVerb::permit, argumentsOf(PermitInput{session, permission}),
                               [](const PersonSession& changed) {
                                 const auto now = changed.session.permission;
                                 return shortId(changed.session.sessionId) + " " +
                                        plainText(changed.session.title) + " is " +
                                        std::string(wireName(now)) + ": " + inWords(now) + ".";
                               });
}

ExitStatus changePolicy(const CommandContext& context, SessionPolicy policy) {
  return change<PersonLimits>(context, PersonVerb::policy, argumentsOf(PolicyInput{policy}),
                              [](const PersonLimits& limits) { return inWords(limits.sessionPolicy); });
}

ExitStatus changeBusyInput(const CommandContext& context, BusyInputChoice choice) {
  BusyInputInput input{choice == BusyInputChoice::all};
  if (choice == BusyInputChoice::ownWindows) input.own = true;
  return change<
      PersonLimits>(context, PersonVerb::busyInput, argumentsOf(input), [](const PersonLimits& limits) {
    if (limits.allowBusySessionInput) return "Busy sessions: agents may type into programs that run.";
    return limits.allowOwnBusySessionInput.value_or(false)
               ? "Busy sessions: agents may type into programs that run in windows that they opened and you have "
                 "not looked at."
               : "Busy sessions: agents type only where no program runs.";
  });
}

}  // namespace velmora
