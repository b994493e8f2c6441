#include "VelmoraHelper/Commands/ClientChange.h"

#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "BridgeModels/Json/JsonEncoding.h"
#include "ClientSetup/Quoting.h"
#include "System/Utf8.h"

namespace velmora {

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

void printLines(std::ostream& out, char sign, std::span<const std::string_view> lines) {
  constexpr std::size_t mostBytes = 200;
  for (const auto line : lines) {
    out << sign << ' ' << plainText(firstBytes(line, mostBytes)) << (line.size() > mostBytes ? "..." : "")
        << '\n';
  }
}

// The lines in which the two differ, from the first such to the last.
void printDifference(std::ostream& out, std::string_view before, std::string_view after) {
  const auto old = linesOf(before);
  const auto now = linesOf(after);
  const auto shorter = std::min(old.size(), now.size());
  std::size_t head = 0;
  while (head < shorter && old[head] == now[head]) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && old[old.size() - 1 - tail] == now[now.size() - 1 - tail]) ++tail;
  printLines(out, '-', std::span(old).subspan(head, old.size() - head - tail));
  printLines(out, '+', std::span(now).subspan(head, now.size() - head - tail));
}

std::string shellLine(const std::vector<std::string>& words) {
  std::string line;
  for (const auto& word : words) line += (line.empty() ? "" : " ") + shellWord(word);
  return line;
}

bool keepsItsFileItself(const McpClient& client) { return client.makeCommands != nullptr; }

std::string lastLine(const ProgramAnswer& answer) {
  const auto lines = linesOf(answer.errors.empty() ? answer.output : answer.errors);
  return lines.empty() ? "it says nothing" : plainText(lines.back());
}

}  // namespace

ClientChange::ClientChange(const CommandContext& context, const McpClient& client, const ServerLaunch& server,
                           ConfigAction action)
    : context_(context),
      client_(client),
      server_(server),
      action_(action),
      path_(entryPath(client, server)) {}

ExitStatus ClientChange::carryOut() const {
  const auto place = clientFile(client_, context_.environment, *context_.files);
  if (!place) return refuse("HOME names no folder, so there is no file to change");
  try {
    return keepsItsFileItself(client_) ? changeByItsCommand(*place) : changeFile(*place);
  } catch (const ConfigTextError& error) {
    return refuse(place->path.string() + " " + error.what());
  } catch (const ConfigFileError& error) {
    return refuse(place->path.string() + " " + error.what());
  }
}

ClientChange::Plan ClientChange::planned(const ClientFile& place, const ConfigFile& file) const {
  Plan plan{.entry = readEntry(place.language, file.text(), path_)};
  if (plan.entry && !launchesVelmora(*plan.entry)) {
    const auto words = launchedWords(*plan.entry);
    throw ConfigTextError("has a \"" + server_.name + "\" that launches " +
                          (words.empty() ? "no program" : words.front()) + ", which is not Velmora's");
  }
  if (action_.removes) {
    plan.isDone = !plan.entry;
  } else {
    plan.changes = plan.entry ? neededChanges(client_, server_, *plan.entry) : entryMembers(client_, server_);
    plan.isDone = plan.changes.empty();
  }
  return plan;
}

ExitStatus ClientChange::changeFile(const ClientFile& place) const {
  ConfigFile file(*context_.files, place.path, ::geteuid());
  const auto plan = planned(place, file);
  if (plan.isDone) return nothingToDo(file, plan);
  const auto text = action_.removes ? withoutEntry(place.language, file.text(), path_)
                                    : withEntry(place.language, file.text(), path_, plan.changes);
  if (action_.isRehearsal) {
    context_.out << title() << "this would change " << plainText(place.path.string()) << ":\n";
    printDifference(context_.out, file.text(), text);
    context_.out << "Nothing was written.\n";
    return ExitStatus::success;
  }
  tellDone(file, plan, file.replace(text, context_.now()));
  return ExitStatus::success;
}

// Running copies of the client write the file all the time, so only its own command may change it.
ExitStatus ClientChange::changeByItsCommand(const ClientFile& place) const {
  ConfigFile file(*context_.files, place.path, ::geteuid());
  const auto plan = planned(place, file);
  if (plan.isDone) return nothingToDo(file, plan);
  const auto commands = itsCommands(plan);
  if (action_.isRehearsal) {
    context_.out << title() << "this would run:\n";
    for (const auto& command : commands) context_.out << shellLine(command) << '\n';
    context_.out << "Nothing was run.\n";
    return ExitStatus::success;
  }
  const auto copy = file.backUp(context_.now());
  const std::string copied = copy ? ". The file as it was: " + copy->string() : "";
  for (const auto& command : commands) {
    const auto answer = context_.runProgram(command);
    if (answer.end == ProgramAnswer::End::notFound) {
      if (copy) context_.files->remove(*copy);
      return refuse("`" + command.front() + "` is not on PATH, and only it may change " +
                    place.path.string());
    }
    if (answer.end != ProgramAnswer::End::exited || answer.exitStatus != 0)
      return refuse("`" + shellLine(command) + "` failed: " + lastLine(answer) + copied);
  }
  const ConfigFile after(*context_.files, place.path, ::geteuid());
  if (!planned(place, after).isDone)
    return refuse("`" + commands.back().front() + "` did not change " + place.path.string() + copied);
  tellDone(after, plan, copy);
  return ExitStatus::success;
}

std::vector<std::vector<std::string>> ClientChange::itsCommands(const Plan& plan) const {
  const std::vector<std::string> scope{"--scope", "user", server_.name};
  const auto command = [&scope](const char* verb, std::vector<std::string> more) {
    std::vector<std::string> words{"claude", "mcp", verb};
    words.insert(words.end(), scope.begin(), scope.end());
    words.insert(words.end(), more.begin(), more.end());
    return words;
  };
  if (action_.removes) return {command("remove", {})};
  if (!plan.entry) {
    std::vector<std::string> launched{"--", server_.command};
    launched.insert(launched.end(), server_.arguments.begin(), server_.arguments.end());
    return {command("add", std::move(launched))};
  }
  // It adds nothing under a name that is taken. What the user has beside the command comes back with it.
  auto entry = *plan.entry;
  for (const auto& [key, value] : plan.changes) {
    entry.erase(key);
    if (value) entry.emplace(key, *value);
  }
  return {command("remove", {}), command("add-json", {encodeJson(JSONValue(std::move(entry)))})};
}

ExitStatus ClientChange::nothingToDo(const ConfigFile& file, const Plan& plan) const {
  context_.out << title() << plainText(file.path().string()) << (plan.entry ? " has " : " has no ") << '"'
               << server_.name << '"' << (plan.entry ? " already" : "") << "; nothing was changed.\n";
  return ExitStatus::success;
}

void ClientChange::tellDone(const ConfigFile& file, const Plan& plan,
                            const std::optional<std::filesystem::path>& copy) const {
  const std::string name = "\"" + server_.name + "\"";
  const auto done = action_.removes ? "took " + name + " out of "
                    : plan.entry    ? "changed " + name + " in "
                                    : "added " + name + " to ";
  context_.out << title() << done << plainText(file.path().string()) << ".\n";
  if (copy) context_.out << "The file as it was: " << plainText(copy->string()) << '\n';
  context_.out << "Next: restart " << client_.name << ", so that it reads this.\n";
}

ExitStatus ClientChange::refuse(const std::string& reason) const {
  context_.err << "velmora: " << plainText(reason) << ".\n";
  if (action_.removes) {
    context_.err << "Take \"" << server_.name << "\" out of it by hand.\n";
  } else {
    context_.err << (keepsItsFileItself(client_) ? "Run this where it is:\n" : "What to put there by hand:\n")
                 << snippetFor(client_, server_) << '\n';
  }
  return ExitStatus::failure;
}

std::string ClientChange::title() const { return std::string(client_.name) + ": "; }

}  // namespace velmora
