#include "BridgeCore/OutputWait.h"

#include <algorithm>

#include "BridgeCore/AdapterAnswer.h"
#include "BridgeCore/LastLine.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto waitingTool = wireName(ToolName::readOutput);
constexpr auto pause = 50ms;
constexpr auto lookEvery = 250ms;
// A look that takes long is followed by a pause as much longer.
constexpr int pausePerLook = 4;
// In characters, so that a screenful more does not push a text out.
constexpr std::int64_t mostSearched = 1'000'000;
// In which input that was just typed reaches the shell. Until the system hands it over nothing shows it, and
// on a machine that is short of processors that was once a tenth of a second.
constexpr auto settling = 30ms;
constexpr int idleGlances = 4;

}  // namespace

OutputWait::OutputWait(TerminalAutomating& automation, TerminalSessionService& sessions,
                       const SessionPermissionService& permissions, Timing timing)
    : automation_(automation),
      permissions_(permissions),
      timing_(std::move(timing)),
      completion_(automation, sessions, permissions) {}

bool OutputWait::wait(const ReadOutputInput& input, const TerminalSession& session, const Caller& caller) {
  const auto begun = timing_.now();
  const auto end = std::min(begun + std::chrono::seconds(input.waitSeconds.value_or(0)),
                            std::max(begun, caller.since + longestCall));
  try {
    switch (input.until.value_or(ReadUntil::idle)) {
      case ReadUntil::change:
        return waitForChange(session, end, caller);
      case ReadUntil::text:
        return waitForText(input, session, end, caller);
      case ReadUntil::idle:
        break;
    }
    return waitForIdle(session, end, caller);
  } catch (const StructuredError&) {
    static_cast<void>(permissions_.requireReadable(session.sessionId, waitingTool));
  } catch (const std::exception&) {
    static_cast<void>(permissions_.requireReadable(session.sessionId, waitingTool));
  }
  return false;
}

// Looks, with pauses between, until it is met, the time is over or nobody waits any more.
template <class Look>
bool OutputWait::lookUntil(Look isMet, std::chrono::milliseconds period, const TerminalSession& session,
                           Time end, const Caller& caller) {
  auto next = timing_.now();
  LastLine lastLine(automation_, permissions_, session.sessionId, caller, timing_.now);
  while (!caller.hasLeft()) {
    static_cast<void>(permissions_.requireReadable(session.sessionId, waitingTool));
    const auto now = timing_.now();
    if (now >= next || now >= end) {
      if (isMet()) return true;
      const auto after = timing_.now();
      next = std::max(now + period, after + pausePerLook * (after - now));
    }
    if (now >= end) return false;
    lastLine.tell();
    timing_.sleep(pause);
  }
  return false;  // nobody hears it
}

bool OutputWait::waitForIdle(const TerminalSession& session, Time end, const Caller& caller) {
  const auto watch = completion_.watch({}, session, caller);
  const auto earliest = timing_.now() + settling;
  int quiet = 0;
  bool closed = false;
  const bool ended = lookUntil(
      [&] {
        const auto activity = watch->glance();
        closed = activity == TabWatch::Activity::closed;
        quiet = activity == TabWatch::Activity::quiet ? quiet + 1 : 0;
        return closed || (quiet >= idleGlances && timing_.now() >= earliest);
      },
      0ms, session, end, caller);
  return ended && !closed;
}

bool OutputWait::waitForChange(const TerminalSession& session, Time end, const Caller& caller) {
  const auto before = screen(session, caller);
  return lookUntil([&] { return screen(session, caller) != before; }, lookEvery, session, end, caller);
}

// Each look begins where the one before ended, so that a text counts which has scrolled away meanwhile. Where
// that place is lost, on a screen that was cleared or drawn anew, all of the screen counts.
bool OutputWait::waitForText(const ReadOutputInput& input, const TerminalSession& session, Time end,
                             const Caller& caller) {
  OutputWish wish{.maxCharacters = mostSearched, .after = input.after};
  return lookUntil(
      [&] {
        const auto found = answerOf(automation_.readAs(wish, session.tty, session.windowId, caller.asOfNow()),
                                    waitingTool, session.reference());
        if (found.cursor) wish.after = found.cursor;
        return found.output.text.find(*input.waitText) != std::string::npos;
      },
      lookEvery, session, end, caller);
}

std::string OutputWait::screen(const TerminalSession& session, const Caller& caller) {
  return answerOf(automation_.readOutput(OutputSource::visible, ReadOutputInput::maxCharactersRange.maximum,
                                         session.tty, session.windowId, caller.asOfNow()),
                  waitingTool, session.reference())
      .text;
}

}  // namespace velmora
