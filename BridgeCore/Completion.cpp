#include "BridgeCore/Completion.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/LastLine.h"
#include "BridgeModels/Text.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;
using Time = std::chrono::steady_clock::time_point;

constexpr auto sendingTool = wireName(ToolName::sendCommand);
constexpr auto firstPause = 10ms;
constexpr auto longestPause = 50ms;
constexpr auto longestPauseOfLooks = 1000ms;
constexpr auto delivery = 30ms;  // in which input that was just typed reaches the shell
constexpr int quietGlances = 2;  // before the terminal is asked

// For a terminal that tells whether a tab is busy only in its listing.
class ListingWatch final : public TabWatch {
 public:
  ListingWatch(TerminalAutomating& automation, TerminalSessionService& sessions, TerminalSession session)
      : automation_(automation), sessions_(sessions), session_(std::move(session)) {}

  Activity glance() override {
    const auto now = std::chrono::steady_clock::now();
    if (now < next_) return last_;
    next_ = now + 250ms;
    try {
      last_ = sessions_.validate(session_.sessionId, sendingTool).busy ? Activity::busy : Activity::quiet;
    } catch (const StructuredError& error) {
      if (error.code == ErrorCode::sessionStale || error.code == ErrorCode::sessionNotFound)
        last_ = Activity::closed;
    } catch (const std::exception&) {  // the input was delivered, whatever becomes of a listing
    }
    wasBusy_ = wasBusy_ || last_ == Activity::busy;
    return last_;
  }

  // What was over before the first listing is told from a second of quiet.
  View look(std::int64_t maxCharacters, bool unfinished, Time /*deadline*/) override {
    View view{.taken = wasBusy_ || std::chrono::steady_clock::now() - begun_ >= 1s};
    if (!view.taken && !unfinished) return view;
    const auto read =
        automation_.readOutput(OutputSource::visible, maxCharacters, session_.tty, session_.windowId).get();
    const auto end = lastCharacters(read.text, maxCharacters);
    view.output = std::string(end.text);
    view.truncated = end.totalCharacters > maxCharacters;
    return view;
  }

 private:
  TerminalAutomating& automation_;
  TerminalSessionService& sessions_;
  const TerminalSession session_;
  const Time begun_ = std::chrono::steady_clock::now();
  Time next_{};
  Activity last_ = Activity::quiet;
  bool wasBusy_ = false;
};

}  // namespace

CompletionService::CompletionService(TerminalAutomating& automation, TerminalSessionService& sessions,
                                     const SessionPermissionService& permissions, Timing timing)
    : automation_(automation), sessions_(sessions), permissions_(permissions), timing_(std::move(timing)) {}

std::shared_ptr<TabWatch> CompletionService::watch(const std::string& command, const TerminalSession& session,
                                                   const Caller& caller) {
  auto watch = answerOf(automation_.watch(command, session.tty, session.windowId, caller), sendingTool,
                        session.reference());
  if (!watch) watch = std::make_shared<ListingWatch>(automation_, sessions_, session);
  return watch;
}

CommandCompletion CompletionService::wait(const std::shared_ptr<TabWatch>& watch,
                                          const SendCommandInput& input, const Caller& caller) {
  const auto begun = timing_.now();
  const auto end = std::min(begun + std::chrono::seconds(input.waitSeconds.value_or(0)),
                            std::max(begun, caller.since + longestCall));
  auto ended = waitUntil(watch, input, end, caller);
  const auto exitStatus =
      ended.state == CompletionState::finished ? ended.view.exitStatus : std::optional<int>();
  CommandCompletion completion{
      .state = ended.state,
      .evidence = ended.state == CompletionState::running ? CompletionEvidence::timeout
                  : exitStatus                            ? CompletionEvidence::shellIntegration
                                                          : CompletionEvidence::process,
      .exitCode = exitStatus,
      .elapsedMilliseconds =
          std::chrono::duration_cast<std::chrono::milliseconds>(timing_.now() - begun).count()};
  if (ended.state != CompletionState::closed && mayRead(input.sessionId, caller)) {
    completion.output = std::move(ended.view.output);
    if (ended.view.truncated) completion.outputTruncated = true;
  }
  return completion;
}

CompletionService::Ended CompletionService::waitUntil(const std::shared_ptr<TabWatch>& watch,
                                                      const SendCommandInput& input, Time end,
                                                      const Caller& caller) {
  std::chrono::milliseconds pause = firstPause;
  std::chrono::milliseconds pauseOfLooks = longestPause;
  Time nextLook = timing_.now() + delivery;
  LastLine lastLine(automation_, permissions_, input.sessionId, caller, timing_.now);
  int quiet = 0;
  while (!caller.hasLeft()) {
    const auto activity = watch->glance();
    if (activity == TabWatch::Activity::closed) return {CompletionState::closed};
    if (activity == TabWatch::Activity::busy) nextLook = Time::min();
    quiet = activity == TabWatch::Activity::quiet ? quiet + 1 : 0;
    if (quiet >= quietGlances && timing_.now() >= nextLook) {
      auto view = look(watch, input, false, caller);
      if (view.taken && watch->glance() == TabWatch::Activity::quiet) {
        return {CompletionState::finished, std::move(view)};
      }
      nextLook = timing_.now() + pauseOfLooks;
      pauseOfLooks = std::min<std::chrono::milliseconds>(2 * pauseOfLooks, longestPauseOfLooks);
    }
    if (timing_.now() >= end) return {CompletionState::running, look(watch, input, true, caller)};
    lastLine.tell();
    timing_.sleep(pause);
    pause = std::min<std::chrono::milliseconds>(pause + firstPause, longestPause);
  }
  return {CompletionState::running};  // nobody hears it
}

TabWatch::View CompletionService::look(const std::shared_ptr<TabWatch>& watch, const SendCommandInput& input,
                                       bool unfinished, const Caller& caller) {
  try {
    return automation_
        .look(watch, input.maxCharacters.value_or(SendCommandInput::usualMaxCharacters), unfinished,
              caller.asOfNow())
        .get();
  } catch (const std::exception&) {
    return {};  // the next look may tell more, and glances still tell that a session has ended
  } catch (const StructuredError&) {
    return {};
  }
}

bool CompletionService::mayRead(const Uuid& sessionId, const Caller& caller) {
  try {
    return permissions_.canRead(sessions_.validate(sessionId, sendingTool, caller.asOfNow()));
  } catch (const std::exception&) {
    return false;
  } catch (const StructuredError&) {
    return false;
  }
}

}  // namespace velmora
