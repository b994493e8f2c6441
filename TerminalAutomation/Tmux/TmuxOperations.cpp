#include "TerminalAutomation/Tmux/TmuxOperations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <thread>
#include <tuple>
#include <utility>

#include "System/FindProgram.h"
#include "TerminalAutomation/PictureFile.h"
#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/TmuxSocket.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t historyLimit = std::size_t{256} << 20;
constexpr std::size_t screenLimit = std::size_t{64} << 20;
constexpr auto restartPause = 300ms;
constexpr auto pollPause = 20ms;
constexpr double lostBufferAge = 60;  // seconds
constexpr int mostSessions = 1'000;
constexpr int promptPolls = 100;
constexpr int attachPolls = 150;

/// Whether the text may stand in a tmux format: a path of a device, not a way to write a format of one's own.
bool isPlainPath(std::string_view text) {
  return !text.empty() &&
         text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-") ==
             std::string_view::npos;
}

/// `text` for an argument that tmux reads as a format, and whose final ";" would part two commands.
std::string literally(const std::string& text) {
  std::string literal;
  for (const char character : text) {
    if (character == '#') literal.push_back('#');
    literal.push_back(character);
  }
  if (literal.ends_with(';')) literal.insert(literal.size() - 1, 1, '\\');
  return literal;
}

std::string windowTarget(const PaneRow& pane) {
  return "$" + std::to_string(pane.session) + ":@" + std::to_string(pane.window);
}

std::string paneTarget(const PaneRow& pane) { return "%" + std::to_string(pane.pane); }

void refuseOldTmux(const PaneRow& row) {
  if (isTooOldTmux(row.version)) throw tmuxError::versionTooOld(row.version);
}

/// The client whose user pressed a key last; the end when nobody is attached.
auto latestClient(const std::vector<ClientRow>& clients) {
  return std::max_element(clients.begin(), clients.end(), [](const ClientRow& left, const ClientRow& right) {
    return std::tie(left.activity, left.created) < std::tie(right.activity, right.created);
  });
}

/// The numbers of guardPassed's line, and the screen after it.
PaneScreen parseScreen(std::string_view output) {
  std::string_view line = output.substr(0, output.find('\n'));
  std::array<int, 5> numbers{};
  for (int& number : numbers) {
    if (!line.starts_with('\t')) throw tmuxError::unreadableAnswer();
    line.remove_prefix(1);
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc()) throw tmuxError::unreadableAnswer();
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  }
  return {.text = std::string(output.substr(std::min(output.find('\n'), output.size() - 1) + 1)),
          .columns = numbers[0],
          .rows = numbers[1],
          .cursorColumn = numbers[2],
          .cursorRow = numbers[3],
          .cursorVisible = numbers[4] != 0};
}

/// "velmora-" and a bridge's id, then the number of the delivery.
bool isBridgeBuffer(std::string_view name) {
  constexpr std::string_view mark = "velmora-";
  constexpr std::size_t idLength = 36;
  return name.starts_with(mark) && name.size() > mark.size() + idLength &&
         Uuid::parse(name.substr(mark.size(), idLength)) && name[mark.size() + idLength] == '-' &&
         name.find('?') == std::string_view::npos;
}

TmuxOptions completed(TmuxOptions options) {
  if (!options.sleep)
    options.sleep = [](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); };
  if (options.homeDirectory.empty()) options.homeDirectory = environmentValue(options.environment, "HOME");
  if (options.homeDirectory.empty()) options.homeDirectory = "/";
  return options;
}

}  // namespace

TmuxOperations::TmuxOperations(TmuxOptions options, TmuxParts parts)
    : options_(completed(std::move(options))),
      parts_(std::move(parts)),
      bufferPrefix_("velmora-" + options_.uuid().toString() + "-"),
      prompts_(options_.now) {}

TmuxAnswer TmuxOperations::invoke(Deadline deadline, std::vector<std::string> arguments,
                                  std::optional<std::string> input, std::size_t outputLimit) const {
  // An invocation that begins too late could still have an effect, and its caller would hear of none.
  if (std::chrono::steady_clock::now() >= deadline)
    throw *tmuxFailure({.end = TmuxAnswer::End::timedOut}, TmuxEffect::none);
  return parts_.transport->run({.arguments = std::move(arguments),
                                .standardInput = std::move(input),
                                .deadline = deadline,
                                .outputLimit = outputLimit});
}

void TmuxOperations::select(Deadline deadline, std::vector<std::string> arguments) const {
  if (auto failure = tmuxFailure(invoke(deadline, std::move(arguments)), TmuxEffect::none))
    throw std::move(*failure);
}

TmuxListing TmuxOperations::list(Deadline deadline, Listed what) const {
  std::vector<std::string> arguments{"list-panes", "-a", "-F", paneRowFormat()};
  if (what != Listed::panes)
    arguments.insert(arguments.end(), {";", "list-clients", "-F", clientRowFormat()});
  if (what == Listed::all) {
    arguments.insert(arguments.end(),
                     {";", "list-buffers", "-f", "#{m:velmora-*,#{buffer_name}}", "-F", bufferRowFormat()});
  }

  TmuxAnswer answer = invoke(deadline, arguments);
  if (saysServerLost(answer)) {
    // It may have been on its way out; a second look tells. A server that loses its client every time is
    // there, but speaks another version's protocol.
    answer = invoke(deadline, arguments);
    if (saysServerLost(answer)) throw tmuxError::versionsMixed(clientVersion(deadline));
  }
  if (saysNoSessions(answer)) return {};
  if (auto failure = tmuxFailure(answer, TmuxEffect::none)) {
    if (answer.errorOutput.find("too old") != std::string::npos) {
      throw tmuxError::versionsMixed(clientVersion(deadline));
    }
    throw std::move(*failure);
  }
  auto listing = parseListing(answer.output);
  if (!listing) throw tmuxError::unreadableAnswer();
  if (!listing->panes.empty()) refuseOldTmux(listing->panes.front());
  return std::move(*listing);
}

std::string TmuxOperations::clientVersion(Deadline deadline) const {
  std::string version = invoke(deadline, {"-V"}).output;
  return version.substr(0, version.find('\n'));
}

PaneRow TmuxOperations::paneAt(const TabAddress& tab) const {
  auto pane = panes_.find(tab);
  if (!pane || !isPlainPath(pane->tty)) throw tmuxError::stale();
  return *std::move(pane);
}

bool TmuxOperations::isBusy(const PaneRow& pane) const {
  return !pane.dead && paneIsBusy(*parts_.processes, pane.process, pane.tty);
}

TerminalTabSnapshot TmuxOperations::snapshot(const ArrangedPane& pane) {
  return {.tty = pane.row.tty,
          .windowId = panes_.enter(pane.row),
          .windowIndex = pane.windowIndex,
          .tabIndex = pane.tabIndex,
          .title = paneTitle(pane.row),
          .busy = isBusy(pane.row),
          .selected = pane.row.active,
          .identity = paneIdentity(pane.row),
          .madeByBridge = pane.row.made};
}

TerminalRuntimeStatus TmuxOperations::status(Deadline deadline) {
  try {
    const TmuxListing listing = list(deadline, Listed::panes);
    std::set<std::int64_t> windows;
    for (const PaneRow& pane : listing.panes) windows.insert(pane.window);
    return {.running = true,
            .windowCount = static_cast<std::int64_t>(windows.size()),
            .permission = AutomationPermission::granted};
  } catch (const StructuredError& error) {
    if (error.code != ErrorCode::terminalNotRunning) throw;
    return {};
  }
}

std::vector<TerminalTabSnapshot> TmuxOperations::listSessions(Deadline deadline) {
  std::vector<TerminalTabSnapshot> tabs;
  const Date taken = prompts_.now();
  // A server that is met first may hold what a bridge that was killed had on its way.
  const bool first = !sawBuffers_;
  const TmuxListing listing = list(deadline, first ? Listed::all : Listed::panesAndClients);
  if (first && !listing.panes.empty() && !sawBuffers_.exchange(true))
    removeLostBuffers(deadline, listing.buffers);
  for (const ArrangedPane& pane : arrangePanes(listing)) {
    tabs.push_back(snapshot(pane));
    prompts_.see(pane, !tabs.back().busy, taken);
  }
  prompts_.forgetBefore(taken);
  return tabs;
}

void TmuxOperations::removeLostBuffers(Deadline deadline, const std::vector<BufferRow>& buffers) const {
  for (const BufferRow& buffer : buffers) {
    // A living bridge's buffer is there for milliseconds.
    const bool old = prompts_.now().unixSeconds() - static_cast<double>(buffer.created) > lostBufferAge;
    if (old && isBridgeBuffer(buffer.name)) invoke(deadline, {"delete-buffer", "-b", buffer.name});
  }
}

TerminalTabSnapshot TmuxOperations::createWindow(Deadline deadline) {
  makeTmuxSocketFolder(parts_.transport->socketPath());
  // A server that hangs would open the window later, when nobody waits for it any more.
  const TmuxAnswer look = invoke(deadline, {"list-sessions"});
  if (look.end == TmuxAnswer::End::timedOut) throw *tmuxFailure(look, TmuxEffect::none);
  TmuxAnswer answer = newSession(deadline);
  if (saysServerLost(answer)) {
    // The former server was still ending.
    options_.sleep(restartPause);
    answer = newSession(deadline);
  }
  if (auto failure = tmuxFailure(answer, TmuxEffect::created)) throw std::move(*failure);
  const std::size_t lineEnd = std::min(answer.output.find('\n'), answer.output.size() - 1);
  const auto created = parseListing(std::string_view(answer.output).substr(0, lineEnd + 1));
  if (!created || created->panes.size() != 1) throw tmuxError::unreadableAnswer();
  const PaneRow& row = created->panes.front();
  refuseOldTmux(row);

  if (const auto pane = waitForPrompt(deadline, row.pane)) return snapshot(*pane);
  const std::string_view option = std::string_view(answer.output).substr(lineEnd + 1);
  throw tmuxError::sessionEndedAtOnce(!option.empty() && !option.starts_with("off"));
}

/// "velmora-1" or the next number that no session has.
TmuxAnswer TmuxOperations::newSession(Deadline deadline) const {
  TmuxAnswer answer;
  for (int number = 1; number <= mostSessions; ++number) {
    const std::string name = "velmora-" + std::to_string(number);
    std::vector<std::string> arguments{"new-session", "-d", "-s", name, "-x", "120", "-y", "40", "-c"};
    arguments.push_back(literally(options_.homeDirectory.string()));
    arguments.insert(arguments.end(),
                     {"-P", "-F", paneRowFormat(), ";", "show-options", "-gqv", "destroy-unattached", ";",
                      "set-option", "-p", "-q", "-t", "=" + name + ":", std::string(madeOption), "1"});
    answer = invoke(deadline, std::move(arguments));
    if (!answer.errorOutput.starts_with("duplicate session")) break;
  }
  return answer;
}

std::optional<ArrangedPane> TmuxOperations::waitForPrompt(Deadline deadline, std::int64_t pane) const {
  std::optional<ArrangedPane> found;
  for (int poll = 0; poll < promptPolls; ++poll) {
    found.reset();
    try {
      for (ArrangedPane& candidate : arrangePanes(list(deadline, Listed::panesAndClients))) {
        if (candidate.row.pane == pane) found = std::move(candidate);
      }
    } catch (StructuredError& error) {
      // A session that ended at once may have taken the server along.
      if (error.code != ErrorCode::terminalNotRunning) {
        // The session is there; the same call would make another one.
        error.retryable = false;
        error.recoverySuggestion = "List the sessions before you create another one.";
        throw;
      }
    }
    if (!found || !isBusy(found->row)) break;
    options_.sleep(pollPause);
  }
  return found;
}

std::string TmuxOperations::newBufferName() { return bufferPrefix_ + std::to_string(++buffers_); }

std::string TmuxOperations::read(Deadline deadline, PaneCommand command, std::size_t outputLimit) const {
  TmuxAnswer answer = invoke(deadline, std::move(command.arguments), std::nullopt, outputLimit);
  if (answer.errorOutput.starts_with("can't find pane")) throw tmuxError::stale();
  if (auto failure = tmuxFailure(answer, TmuxEffect::none)) throw std::move(*failure);
  if (!answer.output.starts_with(guardPassed)) throw tmuxError::stale();
  answer.output.erase(0, guardPassed.size());
  return std::move(answer.output);
}

TerminalOutput TmuxOperations::readOutput(OutputSource source, std::int64_t maxCharacters,
                                          const TabAddress& tab, Deadline deadline) {
  std::string captured = read(deadline, readText(paneAt(tab), source), historyLimit);
  captured.erase(0, 1);  // the end of the guard's line
  const std::string text = tidyPaneText(std::move(captured));
  const TextEnd end = boundedEnd(text, maxCharacters);
  return {.text = std::string(end.text), .source = source, .originalCharacterCount = end.totalCharacters};
}

TerminalScreenCapture TmuxOperations::captureScreen(const TabAddress& tab, Deadline deadline) {
  const PaneScreen screen = parseScreen(read(deadline, readScreen(paneAt(tab)), screenLimit));
  try {
    const std::string png = parts_.drawPicture(screen);
    return {.imagePath = writePictureFile(options_.temporaryDirectory, options_.uuid(), png).string()};
  } catch (const std::runtime_error& error) {
    throw tmuxError::pictureFailed(error.what());
  }
}

void TmuxOperations::focus(const TabAddress& tab, Deadline deadline) {
  // Selecting has no guard in the server, and which terminal was used last changes by the second.
  const TmuxListing listing = list(deadline, Listed::panesAndClients);
  std::optional<PaneRow> found;
  for (ArrangedPane& pane : arrangePanes(listing)) {
    if (panes_.enter(pane.row) == tab.windowId && pane.row.tty == tab.tty) found = std::move(pane.row);
  }
  if (!found) throw tmuxError::stale();
  const auto client = latestClient(listing.clients);
  if (client == listing.clients.end()) {
    select(deadline,
           {"select-window", "-t", windowTarget(*found), ";", "select-pane", "-t", paneTarget(*found)});
    if (!showInDesktopTerminal(deadline, *found)) throw tmuxError::terminalDidNotOpen();
    return;
  }
  // The client's own session when it holds the window; it would leave it otherwise.
  for (const PaneRow& row : listing.panes) {
    if (row.pane == found->pane && row.session == client->session) found = row;
  }
  select(deadline,
         {"switch-client", "-c", client->name, "-t", windowTarget(*found) + "." + paneTarget(*found)});
}

bool TmuxOperations::showInDesktopTerminal(Deadline deadline, const PaneRow& pane) const {
  // The pane names its session too, and unlike "$1" it means nothing to a shell that a terminal may use.
  const auto program = options_.program ? options_.program : findProgram("tmux", options_.environment);
  if (!program || !parts_.desktop->open({program->string(), "-u", "-S", parts_.transport->socketPath(),
                                         "attach-session", "-t", paneTarget(pane)})) {
    return true;  // no screen at hand: attaching to this session shows it
  }
  for (int poll = 0; poll < attachPolls; ++poll) {
    if (!list(deadline, Listed::panesAndClients).clients.empty()) return true;
    options_.sleep(pollPause);
  }
  return false;
}

}  // namespace velmora
