#include "TerminalAutomation/Tmux/TmuxOperations.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <utility>

#include "System/Utf8.h"
#include "TerminalAutomation/PictureFile.h"
#include "TerminalAutomation/Tmux/PaneText.h"
#include "TerminalAutomation/Tmux/ShellStart.h"
#include "TerminalAutomation/Tmux/TmuxSocket.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t listingLimit = std::size_t{64} << 20;
constexpr std::size_t screenLimit = std::size_t{64} << 20;
constexpr auto restartPause = 300ms;
constexpr auto pollPause = 20ms;
constexpr double lostBufferAge = 60;  // seconds
constexpr int mostSessions = 1'000;
constexpr int promptPolls = 100;
constexpr int blankPolls = 10;

/// Whether the text may stand in a tmux format: a path of a device, not a way to write a format of one's own.
bool isPlainPath(std::string_view text) {
  return !text.empty() &&
         text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-") ==
             std::string_view::npos;
}

/// `text` for an argument that tmux reads as a format.
std::string literally(const std::string& text) {
  std::string literal;
  for (const char character : text) {
    if (character == '#') literal.push_back('#');
    literal.push_back(character);
  }
  return literal;
}

void refuseOldTmux(std::string_view version) {
  if (isTooOldTmux(version)) throw tmuxError::versionTooOld(version);
}

struct CreatedPane {
  std::int64_t pane;
  std::string_view version;
  std::string_view option;  ///< destroy-unattached
};
constexpr auto createdPaneFormat = "#{pane_id}\t#{version}";

/// Two lines: createdPaneFormat, and the option's value.
CreatedPane parseCreatedPane(std::string_view output) {
  const std::size_t lineEnd = output.find('\n');
  if (lineEnd == std::string_view::npos) throw tmuxError::unreadableAnswer();
  const std::string_view line = output.substr(0, lineEnd);
  const std::size_t tab = line.find('\t');
  CreatedPane created{.pane = 0, .version = {}, .option = output.substr(lineEnd + 1)};
  if (!line.starts_with('%') || tab == std::string_view::npos) throw tmuxError::unreadableAnswer();
  const auto [end, error] = std::from_chars(line.data() + 1, line.data() + tab, created.pane);
  if (error != std::errc() || end != line.data() + tab) throw tmuxError::unreadableAnswer();
  created.version = line.substr(tab + 1);
  return created;
}

bool isBlank(const PaneRow& pane) {
  return pane.historySize == 0 && pane.cursorRow == 0 && pane.cursorColumn == 0;
}

bool saysDuplicate(const TmuxAnswer& answer) { return answer.errorOutput.starts_with("duplicate session"); }

StructuredError nameTaken(const std::string& name) {
  return {.code = ErrorCode::invalidArgument,
          .message = "A tmux session named " + name + " exists already.",
          .recoverySuggestion = "Choose another name, or leave it out."};
}

// tmux would start the shell in the user's home without a word.
void refuseMissingFolder(const WindowWish& wish) {
  std::error_code error;
  if (!wish.directory || std::filesystem::is_directory(*wish.directory, error)) return;
  throw StructuredError{.code = ErrorCode::invalidArgument,
                        .message = "There is no directory " + plainText(*wish.directory) + ".",
                        .recoverySuggestion = "Name a directory that exists."};
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

std::vector<const PaneRow*> rowsOf(const std::vector<ArrangedPane>& panes) {
  std::vector<const PaneRow*> rows;
  rows.reserve(panes.size());
  for (const ArrangedPane& pane : panes) rows.push_back(&pane.row);
  return rows;
}

TmuxOptions completed(TmuxOptions options) {
  if (!options.runtimeFolder) {
    options.runtimeFolder = [folder = options.temporaryDirectory] { return folder; };
  }
  if (options.homeDirectory.empty()) options.homeDirectory = environmentValue(options.environment, "HOME");
  if (options.homeDirectory.empty()) options.homeDirectory = "/";
  return options;
}

}  // namespace

TmuxOperations::TmuxOperations(TmuxOptions options, TmuxParts parts)
    : options_(completed(std::move(options))),
      parts_(std::move(parts)),
      looks_(*parts_.processes, options_.sleep),
      bufferPrefix_("velmora-" + options_.uuid().toString() + "-"),
      wayNote_(options_.runtimeFolder),
      prompts_(options_.now) {}

void TmuxOperations::useSettings(const PrivacyRetentionSettings& settings) {
  parts_.transport->useProgramOnly(settings.tmuxTransport == TmuxTransportChoice::program);
  integratesShells_ = settings.shellIntegration != ShellIntegrationChoice::off;
  containsWindows_ = settings.containNewWindows.value_or(false);
  // Also for the shells that users integrate themselves.
  makeShellRecordFolder(options_.runtimeFolder());
}

TmuxAnswer TmuxOperations::invoke(Deadline deadline, std::vector<std::string> arguments,
                                  std::optional<std::string> input, std::size_t outputLimit,
                                  std::function<void()> meanwhile) const {
  // An invocation that begins too late could still have an effect, and its caller would hear of none.
  if (std::chrono::steady_clock::now() >= deadline)
    throw *tmuxFailure({.end = TmuxAnswer::End::timedOut}, TmuxEffect::none);
  return parts_.transport->run({.arguments = std::move(arguments),
                                .standardInput = std::move(input),
                                .deadline = deadline,
                                .outputLimit = outputLimit,
                                .meanwhile = std::move(meanwhile)});
}

TmuxListing TmuxOperations::list(Deadline deadline, Listed what, const std::string& tty,
                                 const std::function<void()>& meanwhile) const {
  std::vector<std::string> arguments = paneListing(tty);
  if (what != Listed::panes)
    arguments.insert(arguments.end(), {";", "list-clients", "-F", clientRowFormat()});
  if (what == Listed::all) {
    arguments.insert(arguments.end(),
                     {";", "list-buffers", "-f", "#{m:velmora-*,#{buffer_name}}", "-F", bufferRowFormat()});
  }

  const auto ask = [&] { return invoke(deadline, arguments, {}, listingLimit, meanwhile); };
  TmuxAnswer answer = ask();
  if (saysServerLost(answer)) {
    // It may have been on its way out; a second look tells. A server that loses its client every time is
    // there, but speaks another version's protocol.
    answer = ask();
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
  if (!listing->panes.empty()) refuseOldTmux(listing->panes.front().version);
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

TerminalTabSnapshot TmuxOperations::snapshot(const ArrangedPane& pane, bool busy) {
  return {.tty = pane.row.tty,
          .windowId = panes_.enter(pane),
          .windowIndex = pane.windowIndex,
          .tabIndex = pane.tabIndex,
          .title = paneTitle(pane.row),
          .busy = busy,
          .selected = pane.row.active,
          .identity = paneIdentity(pane.row),
          .madeByBridge = pane.row.made,
          .neverShown = !pane.row.shown,
          .targets = paneTargets(pane.row)};
}

TerminalRuntimeStatus TmuxOperations::status(Deadline deadline) {
  try {
    const TmuxListing listing = list(deadline, Listed::panes);
    wayNote_.tell(parts_.transport->way() + "\n" + parts_.transport->socketPath());
    std::set<std::int64_t> windows;
    for (const PaneRow& pane : listing.panes) windows.insert(pane.window);
    return {.running = true,
            .windowCount = static_cast<std::int64_t>(windows.size()),
            .permission = AutomationPermission::granted};
  } catch (const StructuredError& error) {
    if (error.code != ErrorCode::terminalNotRunning) throw;
    wayNote_.tell("\n" + parts_.transport->socketPath());
    return {};
  }
}

std::vector<TerminalTabSnapshot> TmuxOperations::listSessions(Deadline deadline) {
  const Date taken = prompts_.now();
  // A server that is met first may hold what a bridge that was killed had on its way.
  const bool first = !sawBuffers_;
  PaneLooks::Ahead ahead;
  const TmuxListing listing =
      list(deadline, first ? Listed::all : Listed::panesAndClients, {}, [&] { ahead = looks_.lookAhead(); });
  if (first && !listing.panes.empty() && !sawBuffers_.exchange(true))
    removeLostBuffers(deadline, listing.buffers);
  const std::vector<ArrangedPane> panes = arrangePanes(listing);
  const std::vector<const PaneRow*> rows = rowsOf(panes);
  auto tabs = see(panes, looks_.areBusy(rows, ahead), taken);
  looks_.expect(rows);
  prompts_.forgetBefore(taken);
  return tabs;
}

std::vector<TerminalTabSnapshot> TmuxOperations::listTab(const std::string& tty, Deadline deadline) {
  if (!sawBuffers_ || !isPlainPath(tty)) return listSessions(deadline);
  const Date taken = prompts_.now();
  std::vector<ArrangedPane> panes = arrangePanes(list(deadline, Listed::panesAndClients, tty));
  for (ArrangedPane& pane : panes) panes_.recallPlace(pane);
  return see(panes, looks_.areBusy(rowsOf(panes)), taken);
}

/// The tabs of panes that were just listed, which the directory and the prompt watch get to know.
std::vector<TerminalTabSnapshot> TmuxOperations::see(const std::vector<ArrangedPane>& panes,
                                                     const std::vector<bool>& busy, Date taken) {
  std::vector<TerminalTabSnapshot> tabs;
  tabs.reserve(panes.size());
  for (std::size_t i = 0; i < panes.size(); ++i) {
    tabs.push_back(snapshot(panes[i], busy[i]));
    prompts_.see(panes[i], !busy[i], taken);
  }
  return tabs;
}

void TmuxOperations::removeLostBuffers(Deadline deadline, const std::vector<BufferRow>& buffers) const {
  for (const BufferRow& buffer : buffers) {
    // A living bridge's buffer is there for milliseconds.
    const bool old = prompts_.now().unixSeconds() - static_cast<double>(buffer.created) > lostBufferAge;
    if (old && isBridgeBuffer(buffer.name)) invoke(deadline, {"delete-buffer", "-b", buffer.name});
  }
}

TerminalTabSnapshot TmuxOperations::createWindowAs(const WindowWish& wish, Deadline deadline) {
  refuseMissingFolder(wish);
  makeTmuxSocketFolder(parts_.transport->socketPath());
  const auto shell = containsWindows_ ? parts_.containedCommand(deadline) : std::vector<std::string>();
  // A server that hangs would open the window later, when nobody waits for it any more.
  const TmuxAnswer look = invoke(deadline, {"list-sessions"});
  if (look.end == TmuxAnswer::End::timedOut) throw *tmuxFailure(look, TmuxEffect::none);
  TmuxAnswer answer = newSession(wish, shell, deadline);
  if (saysServerLost(answer)) {
    // The former server was still ending.
    options_.sleep(restartPause);
    answer = newSession(wish, shell, deadline);
  }
  if (wish.name && saysDuplicate(answer)) throw nameTaken(*wish.name);
  if (auto failure = tmuxFailure(answer, TmuxEffect::created)) throw std::move(*failure);
  const CreatedPane created = parseCreatedPane(answer.output);
  refuseOldTmux(created.version);

  if (const auto pane = waitForPrompt(deadline, created.pane)) return snapshot(*pane, isBusy(pane->row));
  throw tmuxError::sessionEndedAtOnce(!created.option.empty() && !created.option.starts_with("off"));
}

/// Named as wished, else "velmora-1" or the next number that no session has. `shell` is the command that it
/// runs, if not tmux's own choice. The integration needs folders that a contained shell does not see.
TmuxAnswer TmuxOperations::newSession(const WindowWish& wish, const std::vector<std::string>& shell,
                                      Deadline deadline) const {
  const auto startFolder =
      integratesShells_ && shell.empty() ? writeShellStart(options_.runtimeFolder()) : std::nullopt;
  TmuxAnswer answer;
  for (int number = 1; number <= mostSessions; ++number) {
    const std::string name = wish.name.value_or("velmora-" + std::to_string(number));
    std::vector<TmuxWords> commands{
        {"new-session", "-d", "-s", name, "-x", std::to_string(wish.columns.value_or(120)), "-y",
         std::to_string(wish.rows.value_or(40)), "-c",
         literally(wish.directory.value_or(options_.homeDirectory.string())), "-P", "-F", createdPaneFormat},
        {"show-options", "-gqv", "destroy-unattached"},
        {"set-option", "-p", "-q", "-t", "=" + name + ":", std::string(madeOption), "1"}};
    commands.front().insert(commands.front().end(), shell.begin(), shell.end());
    bool asUsual = !startFolder;
    if (startFolder) {
      answer = invoke(deadline, withShellIntegration(commands, "=" + name, *startFolder));
      // A server that does not know how opens nothing; its shell then starts as usual.
      asUsual = answer.end == TmuxAnswer::End::exited && answer.exitStatus != 0 && answer.output.empty() &&
                !saysDuplicate(answer) && !saysServerLost(answer);
    }
    if (asUsual) answer = invoke(deadline, tmuxArguments(commands));
    if (wish.name || !saysDuplicate(answer)) break;
  }
  return answer;
}

std::optional<ArrangedPane> TmuxOperations::waitForPrompt(Deadline deadline, std::int64_t pane) const {
  std::optional<ArrangedPane> found;
  int blank = 0;
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
    if (!found) break;
    // A shell waits for keys a moment before it has drawn its prompt, and some users' prompts are empty.
    if (!isBusy(found->row) && (!isBlank(found->row) || ++blank > blankPolls)) break;
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
  std::string text = tidyPaneText(std::move(captured));
  const TextEnd end = boundedEnd(text, maxCharacters);
  text.erase(0, text.size() - end.text.size());
  return {.text = std::move(text), .source = source, .originalCharacterCount = end.totalCharacters};
}

TerminalScreenCapture TmuxOperations::captureScreen(const TabAddress& tab, Deadline deadline) {
  const PaneScreen screen = parseScreen(read(deadline, readScreen(paneAt(tab)), screenLimit));
  try {
    const std::string png = parts_.drawPicture(screen);
    return {.imagePath = writePictureFile(options_.temporaryDirectory, options_.uuid(), png).string()};
  } catch (const std::runtime_error& error) {
    options_.log.error("terminal", std::string("no picture: ") + error.what());
    throw tmuxError::pictureFailed(error.what());
  }
}

}  // namespace velmora
