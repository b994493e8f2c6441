// `velmora watch` in a real tmux, over a bridge that tells always the same.
#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <set>
#include <sstream>

#include "BridgeModels/Json/JsonReader.h"
#include "LocalControl/LocalControlServer.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "tests/BridgeHost/HeadlessFixture.h"
#include "tests/VelmoraHelper/Watch/WatchRecords.h"
#include "tests/support/Golden.h"
#include "tests/support/PtyProgram.h"

namespace velmora {
namespace {

using testing::eventually;
using ::testing::HasSubstr;

/// The bridge's end of the users' channel.
class ToldBridge {
 public:
  explicit ToldBridge(const std::filesystem::path& socket)
      : server_(LocalControlHandlerMaker([this](std::optional<pid_t>) {
                  return
                      [this, heard = std::make_shared<bool>(false)](std::string_view request, const Caller&) {
                        return answer(decodeJson<PersonRequest>(request), *heard);
                      };
                }),
                socket) {
    server_.start();
  }
  ~ToldBridge() {
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    changed_.notify_all();
  }

  /// From now on the sessions are told after so long.
  void hesitate(std::chrono::milliseconds time) { hesitation_ = time; }

  /// From now on whoever asks for the sessions is told this instead, unless it is nothing.
  void refuse(std::optional<StructuredError> error) {
    const std::lock_guard lock(mutex_);
    refusal_ = std::move(error);
  }

 private:
  template <class Payload>
  static std::string success(const PersonRequest& request, const Payload& payload) {
    return encodeJson(LocalControlResponse{
        .requestId = request.requestId, .ok = true, .data = decodeJson<JSONValue>(encodeJson(payload))});
  }
  std::string answer(const PersonRequest& request, bool& heard) {
    switch (request.operation) {
      case PersonVerb::status:
        return success(request, PersonStatus{});
      case PersonVerb::sessions:
        waitForTheEnd(hesitation_);
        if (const auto error = refusal())
          return encodeJson(LocalControlResponse{.requestId = request.requestId, .error = error});
        return success(request, PersonSessions{testing::watchedSessions()});
      case PersonVerb::history: {
        auto records = testing::watchedRequests();
        std::reverse(records.begin(), records.end());
        return success(request, PersonHistory{std::move(records), false});
      }
      case PersonVerb::events:
        if (heard) waitForTheEnd(std::chrono::seconds(5));
        heard = true;
        return success(request, PersonEvents{});
      default:
        return success(request, PersonWatch{"/dev/pts/0"});
    }
  }
  std::optional<StructuredError> refusal() {
    const std::lock_guard lock(mutex_);
    return refusal_;
  }
  void waitForTheEnd(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patience, [this] { return hasEnded_; });
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool hasEnded_ = false;
  std::optional<StructuredError> refusal_{};
  std::atomic<std::chrono::milliseconds> hesitation_{};
  LocalControlServer server_;
};

/// How the characters that follow look, in the numbers of the escape sequences that say so.
class Look {
 public:
  void take(int code) {
    if (code == 0) {
      attributes_.clear();
      foreground_ = background_ = 0;
    } else if (code < 10) {
      attributes_.insert(code);
    } else if (code / 10 == 3 && code != 38) {
      foreground_ = code == 39 ? 0 : code;
    } else if (code / 10 == 4 && code != 48) {
      background_ = code == 49 ? 0 : code;
    } else {
      ADD_FAILURE() << "an unexpected look: " << code;
    }
  }
  [[nodiscard]] std::string sequence() const {
    std::string codes = "0";
    for (const int attribute : attributes_) codes += ";" + std::to_string(attribute);
    if (foreground_ != 0) codes += ";" + std::to_string(foreground_);
    if (background_ != 0) codes += ";" + std::to_string(background_);
    return "\\e[" + codes + "m";
  }

 private:
  std::set<int> attributes_;
  int foreground_ = 0;
  int background_ = 0;
};

/// A pane's rows, each look in full before the first character that has it, and no spaces at their ends. The
/// releases of tmux write the same looks in different ways: 3.3a says again which colours end, ends a look in
/// the next row, and leaves out spaces that 3.5a writes.
std::string withLooks(const std::string& pane) {
  std::string rows;
  Look look;
  std::string told = Look().sequence();
  std::size_t end = 0;
  for (std::size_t at = 0; at < pane.size(); ++at) {
    if (pane.compare(at, 2, "\x1B[") == 0) {
      const auto last = pane.find('m', at);
      std::istringstream codes(pane.substr(at + 2, last - at - 2));
      for (std::string code; std::getline(codes, code, ';');) look.take(std::stoi(code));
      at = last;
      continue;
    }
    if (pane[at] == '\n') {
      rows.resize(end);
      told = Look().sequence();
    } else if (look.sequence() != told) {
      rows += told = look.sequence();
    }
    rows += pane[at];
    if (pane[at] != ' ') end = rows.size();
  }
  return rows.substr(0, end);
}

class WatchScreenTest : public testing::HeadlessFixture {
 protected:
  WatchScreenTest() { environment["TZ"] = "UTC"; }

  void startBridge() { bridge.emplace(UnixSocketEndpoint::personURL(socketPath())); }

  /// Starts the screen in a pane of its own.
  void watch(int columns, int rows, const std::string& variables = "") {
    std::filesystem::create_directories(tmuxSocket().parent_path());
    std::filesystem::permissions(tmuxSocket().parent_path(), std::filesystem::perms::owner_all);
    tmux({"new-session", "-d", "-s", "watch", "-x", std::to_string(columns), "-y", std::to_string(rows),
          "env " + variables + " " VELMORA_BIN "/velmora watch; echo It ended with $?; exec cat"});
    tmux({"set-option", "-s", "exit-empty", "off"});  // the next one must not meet a server that is ending
  }
  std::string shown() { return tmux({"capture-pane", "-p", "-t", "watch"}); }
  void expectShown(const std::string& text) {
    EXPECT_TRUE(eventually([&] { return shown().find(text) != std::string::npos; })) << text << "\n"
                                                                                     << shown();
  }
  void press(const std::string& key) { tmux({"send-keys", "-t", "watch", key}); }

  std::optional<ToldBridge> bridge;
};

TEST_F(WatchScreenTest, LooksTheSameInEveryWidthWithAndWithoutColour) {
  startBridge();
  for (const int columns : {60, 80, 120, 200}) {
    for (const bool hasColour : {true, false}) {
      watch(columns, 16, hasColour ? "" : "NO_COLOR=1");
      expectShown("12:00:07");
      expectShown("? help");
      testing::expectGolden("watch/" + std::to_string(columns) + (hasColour ? "" : "-plain") + ".txt",
                            withLooks(tmux({"capture-pane", "-p", "-e", "-t", "watch"})));
      tmux({"kill-session", "-t", "watch"});
    }
  }
}

TEST_F(WatchScreenTest, FollowsTheSizeOfItsWindow) {
  startBridge();
  watch(60, 16);
  expectShown("12:00:07");
  expectShown("? help");
  const auto narrow = shown();
  tmux({"kill-session", "-t", "watch"});
  watch(200, 30);
  expectShown("12:00:07");
  tmux({"resize-window", "-t", "watch", "-x", "60", "-y", "16"});
  EXPECT_TRUE(eventually([&] { return shown() == narrow; })) << shown();
}

TEST_F(WatchScreenTest, ShowsTheWholeRequestAndHelp) {
  startBridge();
  watch(80, 20);
  expectShown("12:00:07");
  for (const auto* key : {"Up", "Up", "Up", "Enter"}) press(key);
  expectShown("Esc back");
  testing::expectGolden("watch/request.txt", shown());
  press("Escape");
  expectShown("? help");
  press("?");
  expectShown("PgUp PgDn");
  testing::expectGolden("watch/help.txt", shown());
  press("q");
  expectShown("? help");
  press("q");
  expectShown("It ended with 0");
}

TEST_F(WatchScreenTest, SaysThatTheBridgeIsNotThereAndFindsItWhenItComes) {
  watch(80, 12);
  expectShown("no bridge");
  startBridge();
  expectShown("active  policy safe");
  expectShown("git status");
  bridge.reset();
  expectShown("no bridge: it has ended; trying again");
  expectShown("git status");
  startBridge();
  expectShown("active  policy safe");
}

TEST_F(WatchScreenTest, SaysWhatTheBridgeRefusesAndKeepsWhatItTold) {
  startBridge();
  watch(80, 16);
  expectShown("12:00:07");
  bridge->refuse(StructuredError{.message = "The terminal did not answer in time."});
  expectShown("The terminal did not answer in time.");
  EXPECT_THAT(shown(), HasSubstr("work: bash"));
  bridge->refuse({});
  expectShown("? help");
  bridge->refuse(StructuredError{.code = ErrorCode::terminalNotRunning, .message = "It does not run."});
  expectShown("It does not run.");
  EXPECT_THAT(shown(), HasSubstr("no sessions"));
}

TEST_F(WatchScreenTest, RestsWhileTheBridgeTakesItsTimeToAnswer) {
  startBridge();
  bridge->hesitate(std::chrono::seconds(3));
  testing::PtyProgram terminal({VELMORA_BIN "/velmora", "watch"}, environment);
  terminal.shownWith("12:00:07");  // the history is asked for after the second list of sessions
  terminal.type("q");
  EXPECT_EQ(terminal.wait(), 0);
  const auto secondsOf = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  EXPECT_LT(secondsOf(terminal.usage().ru_utime) + secondsOf(terminal.usage().ru_stime), 0.5);
}

TEST_F(WatchScreenTest, SaysWhatToDoWhereNoScreenCanBeDrawn) {
  watch(200, 10, "TERM=dumb");
  expectShown("its cursor cannot be moved");
  expectShown("`velmora watch --plain` prints lines");
  tmux({"kill-session", "-t", "watch"});
  watch(200, 10, "TERM=no-such-terminal");
  expectShown("it is not known here");
  tmux({"kill-session", "-t", "watch"});
  startBridge();
  watch(80, 16, "TERM=vt100");
  expectShown("12:00:07");
}

TEST_F(WatchScreenTest, SaysWhatToDoWhereThereIsNoTerminal) {
  testing::ChildProgram program({VELMORA_BIN "/velmora", "watch"}, environment);
  EXPECT_THAT(program.restOfErrors(), HasSubstr("no terminal; `velmora watch --plain` prints lines"));
  EXPECT_EQ(program.wait(), 1);
}

}  // namespace
}  // namespace velmora
