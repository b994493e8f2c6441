#include "TerminalAutomation/Tmux/ShellStart.h"

#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

#include "ShellIntegration/ShellRecord.h"
#include "ShellIntegration/ShellScripts.h"
#include "System/PrivateFolder.h"
#include "System/StagedFile.h"

namespace velmora {

namespace {

constexpr auto bridgeFolder = "app.velmora.Velmora";
constexpr auto startFolderName = "app.velmora.Velmora/shell-start";
constexpr auto bashFile = "start.bash";
constexpr auto zshFolder = "zsh";
constexpr auto fishFile = "velmora.fish";
// Where fish may be; the server compares its option with each.
constexpr std::array<std::string_view, 3> fishPrograms{"/usr/bin/fish", "/bin/fish", "/usr/local/bin/fish"};

bool isPlain(std::string_view path) {
  return path.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-") ==
         std::string_view::npos;
}

void writeIfOther(const std::filesystem::path& file, const std::string& content) {
  std::ifstream present(file, std::ios::binary);
  if (present && std::string(std::istreambuf_iterator<char>(present), {}) == content) return;
  PosixFileSystem files;
  StagedFile(files, file, content).commit();
}

std::string scriptOf(std::string_view shell, const std::string& setRuntime) {
  const ShellScript& script = *findShellScript(shell);
  return std::string(script.start) + setRuntime + std::string(script.snippet);
}

TmuxWords environment(const char* flags, std::string name, const std::string& value = {}) {
  TmuxWords words{"set-environment", flags, std::move(name)};
  if (!value.empty()) words.push_back(value);
  return words;
}

/// The variables' former values go to others of our own, so that the shell can have them back.
const TmuxWords keepEnv = environment("-gF", "VELMORA_ENV", "#{ENV}");
const TmuxWords keepZdotdir = environment("-gF", "VELMORA_ZDOTDIR", "#{ZDOTDIR}");

std::string both(const std::string& left, const std::string& right) {
  return "#{&&:" + left + "," + right + "}";
}

TmuxWords decide(const std::string& condition, const std::vector<TmuxWords>& commands) {
  return {"if-shell", "-F", condition, tmuxText(commands)};
}

/// `commands` with these variables for the shell alone.
std::vector<TmuxWords> withVariables(std::vector<TmuxWords> commands, const TmuxWords& keep,
                                     const std::string& target,
                                     const std::vector<std::pair<std::string, std::string>>& variables) {
  for (const auto& [name, value] : variables) {
    commands.front().insert(commands.front().begin() + 1, {"-e", name + "=" + value});
    commands.push_back({"set-environment", "-t", target, "-u", name});
  }
  commands.insert(commands.begin(), keep);
  return commands;
}

}  // namespace

std::vector<std::string> tmuxArguments(const std::vector<TmuxWords>& commands) {
  std::vector<std::string> arguments;
  for (const TmuxWords& words : commands) {
    if (!arguments.empty()) arguments.emplace_back(";");
    for (const std::string& word : words) {
      arguments.push_back(word);
      // A final ";" would part two commands.
      if (word.ends_with(';')) arguments.back().insert(word.size() - 1, 1, '\\');
    }
  }
  return arguments;
}

std::string tmuxText(const std::vector<TmuxWords>& commands) {
  std::string text;
  for (const TmuxWords& words : commands) {
    if (!text.empty()) text += " ; ";
    for (const std::string& word : words) {
      text += text.empty() || text.ends_with(' ') ? "'" : " '";
      for (const char character : word) text += character == '\'' ? "'\"'\"'" : std::string(1, character);
      text += "'";
    }
  }
  return text;
}

void makeShellRecordFolder(const std::filesystem::path& runtimeFolder) noexcept {
  try {
    if (!runtimeFolder.is_absolute()) return;
    openPrivateFolder(runtimeFolder / bridgeFolder);
    openPrivateFolder(runtimeFolder / shellRecordFolder);
  } catch (const std::exception&) {
    // The socket's own place is as bad, and that is reported.
  }
}

std::optional<std::filesystem::path> writeShellStart(const std::filesystem::path& runtimeFolder) {
  if (!runtimeFolder.is_absolute() || !isPlain(runtimeFolder.native())) return std::nullopt;
  try {
    makeShellRecordFolder(runtimeFolder);
    auto folder = runtimeFolder / startFolderName;
    openPrivateFolder(folder);
    openPrivateFolder(folder / zshFolder);
    const std::string& runtime = runtimeFolder.native();
    writeIfOther(folder / bashFile, scriptOf("bash", "__velmora_runtime=" + runtime + "\n"));
    writeIfOther(folder / zshFolder / ".zshenv",
                 scriptOf("zsh", "'builtin' 'typeset' -g __velmora_runtime=" + runtime + "\n"));
    writeIfOther(folder / fishFile, scriptOf("fish", "set -g __velmora_runtime " + runtime + "\n"));
    return folder;
  } catch (const std::exception&) {
    return std::nullopt;  // the plain shell then
  }
}

std::vector<std::string> withShellIntegration(const std::vector<TmuxWords>& commands,
                                              const std::string& target,
                                              const std::filesystem::path& startFolder) {
  const std::string startsShell = "#{==:#{default-command},}";
  const std::string isBash = both("#{m:*/bash,#{default-shell}}", "#{==:#{POSIXLY_CORRECT},}");
  const std::string isZsh = "#{m:*/zsh,#{default-shell}}";
  std::string known = "#{||:" + isBash + "," + isZsh + "}";

  // bash reads this one file, and no other, when it starts as a POSIX shell.
  std::vector<TmuxWords> all{
      {"start-server"},
      decide(both(startsShell, isBash),
             withVariables(commands, keepEnv, target,
                           {{"ENV", startFolder / bashFile}, {"POSIXLY_CORRECT", "1"}})),
      decide(both(startsShell, isZsh),
             withVariables(commands, keepZdotdir, target, {{"ZDOTDIR", startFolder / zshFolder}}))};
  const std::string fishRuns =
      "test -r " + (startFolder / fishFile).native() + "; and source " + (startFolder / fishFile).native();
  for (const std::string_view program : fishPrograms) {
    const std::string isFish = "#{==:#{default-shell}," + std::string(program) + "}";
    std::vector<TmuxWords> withFish = commands;
    for (const std::string& word :
         {std::string(program), std::string("--login"), std::string("--init-command"), fishRuns})
      withFish.front().push_back(word);
    all.push_back(decide(both(startsShell, isFish), withFish));
    known = "#{||:" + known + "," + isFish + "}";
  }
  all.push_back(decide("#{?" + both(startsShell, known) + ",0,1}", commands));
  all.push_back(environment("-gu", "VELMORA_ENV"));
  all.push_back(environment("-gu", "VELMORA_ZDOTDIR"));
  return tmuxArguments(all);
}

}  // namespace velmora
