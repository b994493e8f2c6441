// The half of WatchModel.h that lays out what is shown.
#include <algorithm>

#include "VelmoraHelper/Commands/CellText.h"
#include "VelmoraHelper/Watch/RequestWords.h"
#include "VelmoraHelper/Watch/WatchModel.h"

namespace velmora {

namespace {

constexpr std::size_t shortIdCharacters = 8;

// How many columns the texts of a line get; what is left is the last one's.
struct Widths {
  int target;
  int client;
  int tool;
};

constexpr bool isWide(int columns) { return columns >= 100; }

constexpr Widths widthsOf(int columns) {
  if (columns < 80) return {4, 8, 7};
  if (!isWide(columns)) return {8, 12, 7};
  return columns < 160 ? Widths{18, 14, 18} : Widths{22, 20, 18};
}

constexpr int clockWidth = 8;
constexpr int permissionWidth = 10;
constexpr int stateWidth = 5;
constexpr int outcomeWidth = 7;
constexpr int durationWidth = 6;

// A line's texts beside each other, each in as many columns as it is given, a column apart.
class Row {
 public:
  Row(int columns, bool isSelected) : left_(columns), isSelected_(isSelected) {
    append(isSelected ? "> " : "  ", 2, WatchStyle::plain);
  }
  void add(std::string_view text, int columns, WatchStyle style = WatchStyle::plain) {
    append(shownText(text), columns, style);
    append(" ", 1, WatchStyle::plain);
  }
  void addRight(std::string_view text, int columns, WatchStyle style = WatchStyle::plain) {
    const auto shown = shownText(text);
    add(std::string(static_cast<std::size_t>(std::max(columns - columnsOf(shown), 0)), ' ') + shown, columns,
        style);
  }
  WatchLine end(std::string_view text, WatchStyle style = WatchStyle::plain) {
    append(shownText(text), left_, style);
    return std::move(line_);
  }
  int left() const { return left_; }

 private:
  void append(std::string_view shown, int columns, WatchStyle style) {
    columns = std::clamp(columns, 0, left_);
    left_ -= columns;
    if (columns > 0) line_.push_back({padded(shown, columns), isSelected_ ? WatchStyle::selected : style});
  }

  WatchLine line_{};
  int left_;
  const bool isSelected_;
};

WatchStyle styleOf(SessionPermission permission) {
  if (permission == SessionPermission::blocked) return WatchStyle::bad;
  return permission == SessionPermission::readOnly ? WatchStyle::warning : WatchStyle::plain;
}

std::string joined(const std::vector<std::string>& targets) {
  std::string text;
  for (const auto& target : targets) text += (text.empty() ? "" : " ") + target;
  return text;
}

// What the terminal calls a session, in as many columns.
std::string nameOf(const PersonSession& named, int columns) {
  auto id = named.session.sessionId.toString().substr(0, shortIdCharacters);
  if (named.targets.empty()) return id;
  const auto all = joined(named.targets);
  return static_cast<int>(all.size()) <= columns ? all : named.targets.front();
}

}  // namespace

std::string WatchModel::targetOf(const MCPRequestRecord& request) const {
  if (!request.sessionSnapshot) return {};
  if (const auto* session = sessionOf(request)) return nameOf(*session, widthsOf(size_.columns).target);
  return request.sessionSnapshot->sessionId.toString().substr(0, shortIdCharacters);
}

WatchScreen WatchModel::screen() const {
  WatchScreen screen;
  const auto rows = static_cast<std::size_t>(std::max(size_.rows, 1));
  screen.lines.push_back(titleLine());
  if (view_ == View::lists) {
    addLists(screen);
  } else {
    const auto text = view_ == View::help ? helpText() : requestText();
    const auto end = std::min(text.size(), textTop_ + textRows());
    for (auto index = std::min(textTop_, end); index < end; ++index) screen.lines.push_back(text[index]);
  }
  screen.lines.resize(rows - 1);
  screen.lines.push_back(footer());
  if (isFiltering_) screen.cursor = std::min(1 + columnsOf(shownText(filter_)), size_.columns - 1);
  return screen;
}

WatchLine WatchModel::titleLine() const {
  std::vector<WatchRun> runs{{" Velmora ", WatchStyle::title}};
  if (!limits_) {
    runs.push_back({" no bridge: " + gone_, WatchStyle::bad});
  } else {
    runs.push_back(limits_->paused ? WatchRun{" PAUSED: agents type nothing ", WatchStyle::warning}
                                   : WatchRun{" active ", WatchStyle::good});
    runs.push_back({" policy " + std::string(wireName(limits_->sessionPolicy)), WatchStyle::plain});
    if (limits_->allowBusySessionInput) {
      runs.push_back({"  busy input on", WatchStyle::warning});
    } else if (limits_->allowOwnBusySessionInput.value_or(false)) {
      runs.push_back({"  busy input in agents' windows", WatchStyle::warning});
    }
    if (missed_ > 0) runs.push_back({"  " + std::to_string(missed_) + " not shown", WatchStyle::warning});
  }
  int left = size_.columns;
  for (auto& run : runs) {
    run.text = clipped(shownText(run.text), left);
    left -= columnsOf(run.text);
  }
  return runs;
}

WatchLine WatchModel::footer() const {
  if (isFiltering_) return {{padded("/" + shownText(filter_), size_.columns), WatchStyle::plain}};
  if (!message_.empty()) return {{clipped(shownText(message_), size_.columns), messageStyle_}};
  std::string text = "? help  q quit  ";
  if (view_ != View::lists) {
    text = "Esc back  Up/Down scroll";
  } else {
    if (!filter_.empty()) {
      text += "/" + shownText(filter_) + " (" + std::to_string(chosen().size()) + " of " +
              std::to_string(requests_.size()) + ", Esc clears)  ";
    }
    text += limits_ && limits_->paused ? "r resume  " : "p pause  ";
    for (const auto* key : {"/ filter  ", "Enter open  ", "o readOnly  ", "b blocked  ", "m managed  ",
                            "g go to it  ", "Tab other list"}) {
      if (columnsOf(text) + columnsOf(key) > size_.columns) break;
      text += key;
    }
  }
  return {{clipped(text, size_.columns), WatchStyle::faint}};
}

void WatchModel::addLists(WatchScreen& screen) const {
  const auto [sessionRows, requestRows] = areas();
  const auto widths = widthsOf(size_.columns);
  const auto headingStyle = [](bool isActive) { return isActive ? WatchStyle::heading : WatchStyle::faint; };

  Row sessionHeading(size_.columns, false);
  const auto sessionStyle = headingStyle(inSessions_);
  sessionHeading.add("PANE", widths.target, sessionStyle);
  sessionHeading.add("PERMISSION", permissionWidth, sessionStyle);
  sessionHeading.add("STATE", stateWidth, sessionStyle);
  sessionHeading.add("TITLE", sessionHeading.left() * 2 / 5, sessionStyle);
  screen.lines.push_back(sessionHeading.end("LAST REQUEST", sessionStyle));
  for (std::size_t row = 0; row < sessionRows; ++row) {
    const auto index = sessionList_.top + row;
    if (index < sessions_.size()) {
      screen.lines.push_back(sessionLine(sessions_[index], inSessions_ && index == sessionList_.selected));
    } else {
      screen.lines.push_back({{clipped(row == 0 ? "  no sessions" : "", size_.columns), WatchStyle::faint}});
    }
  }

  Row requestHeading(size_.columns, false);
  const auto requestStyle = headingStyle(!inSessions_);
  requestHeading.add("TIME", clockWidth, requestStyle);
  requestHeading.add("CLIENT", widths.client, requestStyle);
  requestHeading.add("PANE", widths.target, requestStyle);
  requestHeading.add("TOOL", widths.tool, requestStyle);
  requestHeading.add("OUTCOME", outcomeWidth, requestStyle);
  requestHeading.addRight("TOOK", durationWidth, requestStyle);
  screen.lines.push_back(requestHeading.end("COMMAND", requestStyle));
  const auto shown = chosen();
  for (std::size_t row = 0; row < requestRows; ++row) {
    const auto index = requestList_.top + row;
    if (index < shown.size()) {
      screen.lines.push_back(requestLine(*shown[index], !inSessions_ && index == requestList_.selected));
    } else {
      screen.lines.push_back({{clipped(row == 0 ? "  no requests" : "", size_.columns), WatchStyle::faint}});
    }
  }
}

WatchLine WatchModel::sessionLine(const PersonSession& named, bool isSelected) const {
  const auto& session = named.session;
  const auto widths = widthsOf(size_.columns);
  Row row(size_.columns, isSelected);
  row.add(nameOf(named, widths.target), widths.target);
  row.add(wireName(session.permission), permissionWidth, styleOf(session.permission));
  row.add(session.busy ? "busy" : "idle", stateWidth);
  row.add(session.title, row.left() * 2 / 5);
  const auto* last = lastRequestOf(session.sessionId);
  if (last == nullptr) return row.end("");
  return row.end(localClock(last->receivedAt) + " " + std::string(shortName(last->toolName)) + " " +
                     commandLineOf(*last, false),
                 WatchStyle::faint);
}

WatchLine WatchModel::requestLine(const MCPRequestRecord& request, bool isSelected) const {
  const auto widths = widthsOf(size_.columns);
  Row row(size_.columns, isSelected);
  row.add(localClock(request.receivedAt), clockWidth, WatchStyle::faint);
  row.add(request.client.name, widths.client);
  row.add(targetOf(request), widths.target);
  row.add(isWide(size_.columns) ? velmora::nameOf(request.toolName) : shortName(request.toolName),
          widths.tool);
  row.add(outcomeOf(request), outcomeWidth, velmora::styleOf(request));
  row.addRight(durationOf(request), durationWidth, WatchStyle::faint);
  return row.end(commandLineOf(request, isWide(size_.columns)));
}

std::vector<WatchLine> WatchModel::requestText() const {
  const auto* request = selectedRequest();
  std::vector<WatchLine> lines;
  if (request == nullptr) return lines;
  const auto add = [&](const std::string& name, std::string_view value,
                       WatchStyle style = WatchStyle::plain) {
    constexpr int nameWidth = 11;
    const int columns = std::max(size_.columns - nameWidth, 2);
    bool isFirst = true;
    while (isFirst || !value.empty()) {
      const auto end = std::min(value.find('\n'), value.size());
      for (const auto& part : wrapped(shownText(value.substr(0, end)), columns)) {
        lines.push_back({{padded(isFirst ? name : "", nameWidth), WatchStyle::faint}, {part, style}});
        isFirst = false;
      }
      value.remove_prefix(std::min(end + 1, value.size()));
    }
  };
  add("Time", localClock(request->receivedAt));
  add("Client", request->client.name + (request->client.version ? " " + *request->client.version : ""));
  add("Tool", wireName(request->toolName));
  if (request->sessionSnapshot) {
    const auto* session = sessionOf(*request);
    add("Session", request->sessionSnapshot->sessionId.toString());
    if (session != nullptr) {
      add("Pane", joined(session->targets).empty() ? session->session.tty : joined(session->targets));
      add("Title", session->session.title);
      add("Permission", wireName(session->session.permission));
    }
  }
  add("Outcome", outcomeOf(*request), velmora::styleOf(*request));
  if (request->durationMilliseconds) add("Took", std::to_string(*request->durationMilliseconds) + " ms");
  if (request->outputCharacterCount) add("Characters", std::to_string(*request->outputCharacterCount));
  if (request->error) {
    add("Error", wireName(request->error->code), velmora::styleOf(*request));
    add("", request->error->message);
    add("", request->error->recoverySuggestion);
  }
  const auto& command = request->commandBody ? request->commandBody : request->commandSummary;
  if (command) add("Command", *command);
  add("Request", request->requestId.toString());
  return lines;
}

std::vector<WatchLine> WatchModel::helpText() const {
  static constexpr const char* text[] = {
      "Up Down  j k    the line before, the next; at the newest request the list follows",
      "PgUp PgDn Home End   further",
      "Tab             between the sessions and the requests",
      "Enter           all of a request; from the sessions, to the session",
      "g               to the session, in your tmux",
      "/               only requests that hold a text; Esc shows all again",
      "p               pause: agents type nothing and open nothing",
      "r               resume",
      "o  b            the session becomes readOnly (agents read it), blocked (they do not)",
      "m  a            the session becomes managed, allowed: agents read it and type into it",
      "q               quit",
      "",
      "Resuming, and giving agents more, takes a word that appears on your terminal, and a",
      "terminal outside tmux. While this runs in a pane, agents are refused that pane.",
  };
  std::vector<WatchLine> lines;
  for (const auto* line : text) {
    for (auto& part : wrapped(line, std::max(size_.columns, 2)))
      lines.push_back({{std::move(part), WatchStyle::plain}});
  }
  return lines;
}

}  // namespace velmora
