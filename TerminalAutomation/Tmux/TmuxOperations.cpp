#include "TerminalAutomation/Tmux/TmuxOperations.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <thread>
#include <tuple>
#include <utility>

#include "BridgeModels/Text.h"
#include "System/FindProgram.h"
#include "TerminalAutomation/Tmux/BusyDetector.h"
#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/PictureFile.h"
#include "TerminalAutomation/Tmux/TmuxSocket.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t historyLimit = std::size_t{256} << 20;
constexpr std::size_t screenLimit = std::size_t{64} << 20;
constexpr auto restartPause = 300ms;
constexpr auto pollPause = 20ms;
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

/// The numbers of guardPassed's line, and the screen after it.
PaneScreen parseScreen(std::string_view output, std::string_view operation) {
  std::string_view line = output.substr(0, output.find('\n'));
  std::array<int, 5> numbers{};
  for (int& number : numbers) {
    if (!line.starts_with('\t')) throw tmuxError::unreadableAnswer(operation);
    line.remove_prefix(1);
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc()) throw tmuxError::unreadableAnswer(operation);
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  }
  return {.text = std::string(output.substr(std::min(output.find('\n'), output.size() - 1) + 1)),
          .columns = numbers[0],
          .rows = numbers[1],
          .cursorColumn = numbers[2],
          .cursorRow = numbers[3],
          .cursorVisible = numbers[4] != 0};
}

}  // namespace

TmuxParts TmuxParts::ofSystem(const TmuxExecutorOptions& options) {
  return {.transport = std::make_unique<TmuxProcessTransport>(options.environment, options.socketPath,
                                                              options.program),
          .processes = systemProcessTable(),
          .desktop = std::make_unique<SystemDesktopTerminal>(options.environment),
          .drawPicture = renderPanePicture};
}

TmuxOperations::TmuxOperations(const TmuxExecutorOptions& options, const TmuxParts& parts)
    : options_(options), parts_(parts), bufferPrefix_("velmora-" + options.uuid().toString() + "-") {}

TmuxOperations::Call TmuxOperations::begin(std::string_view operation) const {
  return {operation, asked_.value_or(std::chrono::steady_clock::now()) + options_.deadline};
}

TmuxAnswer TmuxOperations::invoke(const Call& call, std::vector<std::string> arguments,
                                  std::optional<std::string> input, std::size_t outputLimit) const {
  return parts_.transport->run({.arguments = std::move(arguments),
                                .standardInput = std::move(input),
                                .deadline = call.deadline,
                                .outputLimit = outputLimit});
}

std::string TmuxOperations::invokeOrThrow(const Call& call, std::vector<std::string> arguments,
                                          TmuxEffect effect) const {
  TmuxAnswer answer = invoke(call, std::move(arguments));
  if (auto failure = tmuxFailure(answer, call.operation, effect)) throw std::move(*failure);
  return std::move(answer.output);
}

TmuxListing TmuxOperations::list(const Call& call, bool withClients, const std::string& filter) const {
  std::vector<std::string> arguments{"list-panes", "-a"};
  if (!filter.empty()) arguments.insert(arguments.end(), {"-f", filter});
  arguments.insert(arguments.end(), {"-F", paneRowFormat()});
  if (withClients) arguments.insert(arguments.end(), {";", "list-clients", "-F", clientRowFormat()});

  TmuxAnswer answer = invoke(call, arguments);
  if (saysServerLost(answer)) {
    // It may have been on its way out; a second look tells. A server that loses its client every time is
    // there, but speaks another version's protocol.
    answer = invoke(call, arguments);
    if (saysServerLost(answer)) throw tmuxError::versionsMixed(clientVersion(call), call.operation);
  }
  if (saysNoSessions(answer)) return {};
  if (auto failure = tmuxFailure(answer, call.operation, TmuxEffect::none)) {
    if (answer.errorOutput.starts_with("usage:")) {
      // Before 3.2 there is no -f.
      const std::string version = clientVersion(call);
      throw tmuxError::versionTooOld(version.substr(version.find(' ') + 1), call.operation);
    }
    if (answer.errorOutput.find("too old") != std::string::npos) {
      throw tmuxError::versionsMixed(clientVersion(call), call.operation);
    }
    throw std::move(*failure);
  }
  auto listing = parseListing(answer.output);
  if (!listing) throw tmuxError::unreadableAnswer(call.operation);
  if (!listing->panes.empty() && tmuxVersionNumber(listing->panes.front().version) < oldestTmuxVersion) {
    throw tmuxError::versionTooOld(listing->panes.front().version, call.operation);
  }
  return std::move(*listing);
}

std::string TmuxOperations::clientVersion(const Call& call) const {
  std::string version = invoke(call, {"-V"}).output;
  return version.substr(0, version.find('\n'));
}

PaneRow TmuxOperations::findPane(const Call& call, const std::string& tty, std::int64_t windowId) {
  if (!isPlainPath(tty)) throw tmuxError::stale(call.operation);
  // By the same arrangement as the listing, so that a name that it leaves out is not found here either.
  for (const ArrangedPane& pane :
       arrangePanes(list(call, /*withClients=*/false, "#{==:#{pane_tty}," + tty + "}"))) {
    if (pane.row.tty == tty && windowIds_.windowId(pane.row) == windowId) return pane.row;
  }
  throw tmuxError::stale(call.operation);
}

PaneRow TmuxOperations::findPaneForInput(const Call& call, const std::string& tty, std::int64_t windowId,
                                         bool allowBusy) {
  PaneRow pane = findPane(call, tty, windowId);
  if (pane.dead) throw tmuxError::dead(call.operation);
  if (pane.inputOff) throw tmuxError::inputOff(call.operation);
  if (!allowBusy && isBusy(pane)) throw tmuxError::busy(call.operation);
  return pane;
}

bool TmuxOperations::isBusy(const PaneRow& pane) const {
  return !pane.dead && paneIsBusy(*parts_.processes, pane.process, pane.tty);
}

TerminalTabSnapshot TmuxOperations::snapshot(const ArrangedPane& pane) {
  return {.tty = pane.row.tty,
          .windowId = windowIds_.windowId(pane.row),
          .windowIndex = pane.windowIndex,
          .tabIndex = pane.tabIndex,
          .title = paneTitle(pane.row),
          .busy = isBusy(pane.row),
          .selected = pane.row.active};
}

TerminalRuntimeStatus TmuxOperations::status() {
  const Call call = begin("terminal_status");
  try {
    const TmuxListing listing = list(call, /*withClients=*/false);
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

std::vector<TerminalTabSnapshot> TmuxOperations::listSessions() {
  const Call call = begin("terminal_list_sessions");
  std::vector<TerminalTabSnapshot> tabs;
  for (const ArrangedPane& pane : arrangePanes(list(call, /*withClients=*/true)))
    tabs.push_back(snapshot(pane));
  return tabs;
}

TerminalTabSnapshot TmuxOperations::createWindow() {
  const Call call = begin("terminal_create_session");
  makeTmuxSocketFolder(parts_.transport->socketPath());
  const std::vector<std::string> arguments{"new-session",
                                           "-d",
                                           "-x",
                                           "120",
                                           "-y",
                                           "40",
                                           "-c",
                                           literally(options_.homeDirectory.string()),
                                           "-P",
                                           "-F",
                                           paneRowFormat(),
                                           ";",
                                           "show-options",
                                           "-gqv",
                                           "destroy-unattached"};
  TmuxAnswer answer = invoke(call, arguments);
  if (saysServerLost(answer)) {
    // The former server was still ending.
    options_.sleep(restartPause);
    answer = invoke(call, arguments);
  }
  if (auto failure = tmuxFailure(answer, call.operation, TmuxEffect::created)) throw std::move(*failure);
  const std::size_t lineEnd = std::min(answer.output.find('\n'), answer.output.size() - 1);
  const auto created = parseListing(std::string_view(answer.output).substr(0, lineEnd + 1));
  if (!created || created->panes.size() != 1) throw tmuxError::unreadableAnswer(call.operation);
  const PaneRow& row = created->panes.front();
  if (tmuxVersionNumber(row.version) < oldestTmuxVersion)
    throw tmuxError::versionTooOld(row.version, call.operation);

  if (const auto pane = waitForPrompt(call, row.pane)) return snapshot(*pane);
  const std::string_view option = std::string_view(answer.output).substr(lineEnd + 1);
  throw tmuxError::sessionEndedAtOnce(!option.empty() && !option.starts_with("off"), call.operation);
}

std::optional<ArrangedPane> TmuxOperations::waitForPrompt(const Call& call, std::int64_t pane) const {
  std::optional<ArrangedPane> found;
  for (int poll = 0; poll < promptPolls; ++poll) {
    found.reset();
    try {
      for (ArrangedPane& candidate : arrangePanes(list(call, /*withClients=*/true))) {
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

void TmuxOperations::type(const Call& call, PaneCommand command) const {
  const TmuxAnswer answer = invoke(call, std::move(command.arguments), std::move(command.standardInput));
  if (auto failure = tmuxFailure(answer, call.operation, TmuxEffect::typed)) throw std::move(*failure);
  if (answer.output.starts_with(guardRefused)) throw tmuxError::stale(call.operation);
}

void TmuxOperations::sendCommand(const std::string& command, const std::string& tty, std::int64_t windowId,
                                 bool allowBusy) {
  const Call call = begin("terminal_send_command");
  if (command.find('\0') != std::string::npos) throw tmuxError::textHasNul(call.operation);
  const PaneRow pane = findPaneForInput(call, tty, windowId, allowBusy);
  type(call, typeText(pane, command, newBufferName()));
}

void TmuxOperations::sendKey(TerminalKey key, std::int64_t repeatCount, const std::string& tty,
                             std::int64_t windowId, bool allowBusy) {
  const Call call = begin("terminal_send_key");
  if (repeatCount < 1 || repeatCount > 50) throw tmuxError::badRepeatCount(call.operation);
  const PaneRow pane = findPaneForInput(call, tty, windowId, allowBusy);
  type(call, pressKey(pane, key, repeatCount, newBufferName()));
}

std::string TmuxOperations::read(const Call& call, PaneCommand command, std::size_t outputLimit) const {
  TmuxAnswer answer = invoke(call, std::move(command.arguments), std::nullopt, outputLimit);
  if (answer.errorOutput.starts_with("can't find pane")) throw tmuxError::stale(call.operation);
  if (auto failure = tmuxFailure(answer, call.operation, TmuxEffect::none)) throw std::move(*failure);
  if (!answer.output.starts_with(guardPassed)) throw tmuxError::stale(call.operation);
  answer.output.erase(0, guardPassed.size());
  return std::move(answer.output);
}

TerminalOutput TmuxOperations::readOutput(OutputSource source, std::int64_t maxCharacters,
                                          const std::string& tty, std::int64_t windowId) {
  Call call = begin("terminal_read_output");
  const PaneRow pane = findPane(call, tty, windowId);
  if (source == OutputSource::history) call.deadline += options_.historyDeadline - options_.deadline;
  std::string captured = read(call, readText(pane, source), historyLimit);
  captured.erase(0, 1);  // the end of the guard's line
  const std::string text = tidyPaneText(std::move(captured));
  const TextEnd end = lastCharacters(text, maxCharacters);
  return {.text = std::string(end.text), .source = source, .originalCharacterCount = end.totalCharacters};
}

TerminalScreenCapture TmuxOperations::captureScreen(const std::string& tty, std::int64_t windowId) {
  const Call call = begin("terminal_capture_screen");
  const PaneRow pane = findPane(call, tty, windowId);
  const PaneScreen screen = parseScreen(read(call, readScreen(pane), screenLimit), call.operation);
  try {
    const std::string png = parts_.drawPicture(screen);
    return {.imagePath = writePictureFile(options_.temporaryDirectory, options_.uuid(), png).string()};
  } catch (const std::runtime_error& error) {
    throw tmuxError::pictureFailed(error.what(), call.operation);
  }
}

void TmuxOperations::focus(const std::string& tty, std::int64_t windowId) {
  const Call call = begin("terminal_focus_session");
  const PaneRow found = findPane(call, tty, windowId);
  const TmuxListing listing = list(call, /*withClients=*/true);
  const auto client = std::max_element(
      listing.clients.begin(), listing.clients.end(), [](const ClientRow& left, const ClientRow& right) {
        return std::tie(left.activity, left.created) < std::tie(right.activity, right.created);
      });
  if (client == listing.clients.end()) {
    invokeOrThrow(call,
                  {"select-window", "-t", windowTarget(found), ";", "select-pane", "-t", paneTarget(found)},
                  TmuxEffect::none);
    if (!showInDesktopTerminal(call, found)) throw tmuxError::terminalDidNotOpen(call.operation);
    return;
  }
  // The client's own session when it holds the window; it would leave it otherwise.
  PaneRow shown = found;
  for (const PaneRow& row : listing.panes) {
    if (row.pane == found.pane && row.session == client->session) shown = row;
  }
  invokeOrThrow(call,
                {"switch-client", "-c", client->name, "-t", windowTarget(shown) + "." + paneTarget(shown)},
                TmuxEffect::none);
}

bool TmuxOperations::showInDesktopTerminal(const Call& call, const PaneRow& pane) const {
  // The pane names its session too, and unlike "$1" it means nothing to a shell that a terminal may use.
  const auto program = options_.program ? options_.program : findProgram("tmux", options_.environment);
  if (!program || !parts_.desktop->open({program->string(), "-u", "-S", parts_.transport->socketPath(),
                                         "attach-session", "-t", paneTarget(pane)})) {
    return true;  // no screen at hand: the next attach shows it
  }
  for (int poll = 0; poll < attachPolls; ++poll) {
    if (!list(call, /*withClients=*/true).clients.empty()) return true;
    options_.sleep(pollPause);
  }
  return false;
}

}  // namespace velmora
