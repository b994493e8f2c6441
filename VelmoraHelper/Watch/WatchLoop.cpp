#include "VelmoraHelper/Watch/WatchLoop.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <functional>
#include <system_error>
#include <utility>

#include "LocalControl/LocalControlCodecError.h"
#include "LocalControl/UnixSocketError.h"
#include "VelmoraHelper/Commands/LimitCommands.h"
#include "VelmoraHelper/Watch/CursesTerminal.h"
#include "VelmoraHelper/Watch/PersonChannel.h"
#include "VelmoraHelper/Watch/TmuxJump.h"
#include "VelmoraHelper/Watch/WatchModel.h"

namespace velmora {

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

SteadyTime now() { return std::chrono::steady_clock::now(); }

class Loop {
 public:
  Loop(const CommandContext& context, const std::vector<std::filesystem::path>& places,
       const Environment& environment)
      : context_(context),
        environment_(environment),
        terminal_(environment),
        events_(places, context.version),
        questions_(places, context.version) {}

  void run() {
    while (!hasQuit_) {
      keepAsking();
      model_.resize(terminal_.size());
      terminal_.draw(model_.screen());
      if (!wait()) return;
      advance(events_);
      advance(questions_);
      for (auto input = terminal_.read(); input.key != WatchKey::none && !hasQuit_; input = terminal_.read())
        act(model_.press(input));
    }
  }

 private:
  static constexpr std::chrono::seconds refreshEvery{1};
  static constexpr std::chrono::seconds longestSilence{12};

  // False when the user's terminal has gone.
  bool wait() const {
    std::array<pollfd, 3> watched{pollfd{STDIN_FILENO, POLLIN, 0}, pollOf(events_), pollOf(questions_)};
    const auto until = questions_.asked() ? answerUntil_ : nextLook_;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now());
    const auto timeout = std::clamp<std::int64_t>(left.count(), 0, 1'000);
    const int ready = ::poll(watched.data(), watched.size(), static_cast<int>(timeout));
    if (ready < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "poll");
    return ready <= 0 || (watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) == 0;
  }
  static pollfd pollOf(const PersonChannel& channel) {
    return {channel.descriptor(), static_cast<short>(POLLIN | (channel.isWriting() ? POLLOUT : 0)), 0};
  }

  void keepAsking() {
    if (questions_.asked() && now() > answerUntil_) return lose("the bridge does not answer");
    if (questions_.asked() || now() < nextLook_) return;
    try {
      if (!questions_.isOpen()) {
        questions_.open();
        return ask(PersonVerb::watch);
      }
      ask(PersonVerb::status);
    } catch (const UnixSocketError& error) {
      lose(error.inWords());
    }
  }
  void ask(PersonVerb verb) {
    questions_.ask(verb);
    answerUntil_ = now() + longestSilence;
  }

  void advance(PersonChannel& channel) {
    try {
      const auto asked = channel.asked();
      const auto response = channel.advance();
      if (response && asked) take(*asked, *response);
    } catch (const UnixSocketError&) {
      lose("it has ended");
    } catch (const LocalControlCodecError&) {
      lose("its answers cannot be read; update Velmora and velmora to the same version");
    } catch (const JsonDecodeError&) {
      lose("its answers cannot be read; update Velmora and velmora to the same version");
    }
  }

  void take(PersonVerb verb, const LocalControlResponse& response) {
    switch (verb) {
      case PersonVerb::watch:
        complain(personAnswer<PersonWatch>(response, verb).error);
        return ask(PersonVerb::status);
      case PersonVerb::status:
        if (const auto answer = personAnswer<PersonStatus>(response, verb); !isRefused(answer.error))
          model_.bridgeServes(answer.payload.limits);
        return ask(PersonVerb::sessions);
      case PersonVerb::sessions:
        if (auto answer = personAnswer<PersonSessions>(response, verb);
            !isRefused(answer.error) || answer.error->code == ErrorCode::terminalNotRunning)
          model_.show(std::move(answer.payload.sessions));
        if (const auto before = std::exchange(told_, std::exchange(refusal_, {})); told_ != before)
          model_.say(told_, WatchStyle::warning);
        nextLook_ = now() + refreshEvery;
        if (!events_.isOpen()) {
          events_.open();
          events_.ask(PersonVerb::events);
        } else if (hearsEvents_ && !knowsHistory_) {
          knowsHistory_ = true;
          ask(PersonVerb::history);
        }
        return;
      case PersonVerb::history:
        if (auto answer = personAnswer<PersonHistory>(response, verb); !answer.error) {
          std::reverse(answer.payload.records.begin(), answer.payload.records.end());
          model_.add(std::move(answer.payload.records));
        } else {
          complain(answer.error);
        }
        return;
      case PersonVerb::events:
        takeEvents(personAnswer<PersonEvents>(response, verb));
        return;
      default:
        return;
    }
  }
  void complain(const std::optional<StructuredError>& error) {
    if (error) model_.say(error->message, WatchStyle::warning);
  }
  // What the bridge does not tell at this look; what it told at the last one stays on the screen.
  bool isRefused(const std::optional<StructuredError>& error) {
    if (error) refusal_ = error->message;
    return error.has_value();
  }
  // From the first answer on every request is heard of; what was before stands in the history.
  void takeEvents(PersonAnswer<PersonEvents> answer) {
    if (answer.error) {
      lose("it reports no requests");
      return complain(answer.error);
    }
    if (!hearsEvents_ || !answer.payload.requests.empty()) nextLook_ = now();  // sessions may have changed
    hearsEvents_ = true;
    model_.add(std::move(answer.payload.requests), answer.payload.missed);
    events_.ask(PersonVerb::events);
  }
  void lose(const std::string& reason) {
    events_.close();
    questions_.close();
    hearsEvents_ = knowsHistory_ = false;
    model_.bridgeIsGone(reason + "; trying again");
    nextLook_ = now() + refreshEvery;
  }

  void act(const WatchAction& action) {
    switch (action.kind) {
      case WatchAction::Kind::none:
        return;
      case WatchAction::Kind::quit:
        hasQuit_ = true;
        return;
      case WatchAction::Kind::redraw:
        return terminal_.forgetWhatIsShown();
      case WatchAction::Kind::jump:
        if (action.session) {
          const auto problem =
              jumpTo(action.session->session, action.session->targets, environment_, context_.askProgram);
          if (!problem.empty()) model_.say(problem, WatchStyle::warning);
        }
        return;
      case WatchAction::Kind::pause:
        return change(PersonVerb::pause, {}, action, "Paused: agents type nothing and open nothing.");
      case WatchAction::Kind::resume:
        return change(PersonVerb::resume, {}, action, "Not paused.");
      case WatchAction::Kind::permit:
        return change(
            PersonVerb::permit,
            argumentsOf(PermitInput{action.session->session.sessionId.toString(), action.permission}), action,
            "The session is " + std::string(wireName(action.permission)) + ".");
    }
  }

  // The bridge writes its word to this terminal, which must be the shell's then.
  void change(PersonVerb verb, JSONObject arguments, const WatchAction& action, const std::string& done) {
    if (action.loosens) terminal_.handOver();
    const auto calls = context_.person();
    auto response = calls->call(verb, std::move(arguments), action.loosens ? userDeadline : personDeadline);
    const bool wantsWord = response.ok && response.data && response.data->find("wordShownOn") != nullptr;
    if (wantsWord && !action.loosens) {  // the session has changed meanwhile; the word is on the screen
      terminal_.forgetWhatIsShown();
      response = {.error = StructuredError{.message = "It has changed meanwhile: press the key again."}};
    } else if (wantsWord) {
      response = confirmed(context_, *calls, std::move(response));
    }
    if (action.loosens) terminal_.takeBack();
    if (response.ok) {
      model_.say(done, WatchStyle::good);
    } else {
      const auto error = response.error.value_or(StructuredError{.message = "It failed."});
      model_.say(error.message, WatchStyle::warning);
    }
    nextLook_ = now();
  }

  const CommandContext& context_;
  const Environment& environment_;
  CursesTerminal terminal_;
  PersonChannel events_;
  PersonChannel questions_;
  WatchModel model_{};
  SteadyTime nextLook_{};
  SteadyTime answerUntil_{};
  std::string refusal_{};     // of this look, empty for none
  std::string told_{};        // that of the look before, which the user was told once
  bool hearsEvents_ = false;  // from then on every request
  bool knowsHistory_ = false;
  bool hasQuit_ = false;
};

}  // namespace

ExitStatus watchOnScreen(const CommandContext& context, const std::vector<std::filesystem::path>& places,
                         const Environment& environment) {
  Loop(context, places, environment).run();
  return ExitStatus::success;
}

}  // namespace velmora
