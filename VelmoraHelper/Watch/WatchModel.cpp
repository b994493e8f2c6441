#include "VelmoraHelper/Watch/WatchModel.h"

#include <algorithm>
#include <utility>

#include "VelmoraHelper/Watch/RequestWords.h"

namespace velmora {

namespace {

template <class Items, class Id, class IdOf>
std::optional<std::size_t> indexOf(const Items& items, const Id& id, IdOf idOf) {
  const auto found =
      std::find_if(items.begin(), items.end(), [&](const auto& item) { return idOf(item) == id; });
  if (found == items.end()) return std::nullopt;
  return static_cast<std::size_t>(found - items.begin());
}

const Uuid& idOf(const PersonSession& named) { return named.session.sessionId; }

}  // namespace

// The selected line stays in sight, and no room below the last line is wasted.
void WatchModel::List::settle(std::size_t count, std::size_t visible) {
  selected = count == 0 ? 0 : std::min(selected, count - 1);
  if (selected < top) top = selected;
  if (selected >= top + visible) top = selected + 1 - visible;
  top = std::min(top, count > visible ? count - visible : 0);
}

void WatchModel::resize(WatchSize size) {
  size_ = size;
  settle();
}

void WatchModel::bridgeServes(PersonLimits limits) {
  limits_ = limits;
  gone_.clear();
}

void WatchModel::bridgeIsGone(std::string reason) {
  limits_.reset();
  gone_ = std::move(reason);
  sessions_.clear();
  settle();
}

void WatchModel::show(std::vector<PersonSession> sessions) {
  std::optional<Uuid> selected;
  if (const auto* session = selectedSession()) selected = idOf(*session);
  sessions_ = std::move(sessions);
  if (selected) sessionList_.selected = indexOf(sessions_, *selected, idOf).value_or(sessionList_.selected);
  settle();
}

void WatchModel::add(std::vector<MCPRequestRecord> requests, std::int64_t missed) {
  missed_ += missed;
  const auto endOf = [](const MCPRequestRecord& request) {
    return request.completedAt.value_or(request.receivedAt);
  };
  for (auto& request : requests) {
    const auto known = indexOf(requests_, request.requestId, [](const auto& r) { return r.requestId; });
    if (known) {
      if (!request.commandBody) request.commandBody = std::move(requests_[*known].commandBody);
      requests_[*known] = std::move(request);
      continue;
    }
    // The history comes after the first that are heard of.
    const auto place =
        std::upper_bound(requests_.begin(), requests_.end(), endOf(request),
                         [&](const Date& end, const auto& other) { return end < endOf(other); });
    requests_.insert(place, std::move(request));
    if (requests_.size() > mostRequests) requests_.pop_front();
  }
  settle();
}

void WatchModel::say(std::string message, WatchStyle style) {
  message_ = std::move(message);
  messageStyle_ = style;
}

void WatchModel::settle() {
  const auto [sessions, requests] = areas();
  sessionList_.settle(sessions_.size(), sessions);
  const auto shown = chosen();
  if (!follows_ && selectedId_) {
    const auto at = indexOf(shown, *selectedId_, [](const auto* request) { return request->requestId; });
    if (at) requestList_.selected = *at;
  }
  if (follows_ && !shown.empty()) requestList_.selected = shown.size() - 1;
  requestList_.settle(shown.size(), requests);
}

WatchModel::Areas WatchModel::areas() const {
  constexpr std::size_t frame = 4;  // title, two headings, footer
  const auto rows = static_cast<std::size_t>(std::max(size_.rows, 1));
  if (rows <= frame + 2) return {1, 1};
  const auto sessions =
      std::clamp<std::size_t>(sessions_.size(), 1, std::max<std::size_t>(1, (rows - frame) / 3));
  return {sessions, rows - frame - sessions};
}

std::size_t WatchModel::textRows() const { return static_cast<std::size_t>(std::max(size_.rows - 2, 1)); }

std::vector<const MCPRequestRecord*> WatchModel::chosen() const {
  std::vector<const MCPRequestRecord*> shown;
  shown.reserve(requests_.size());
  for (const auto& request : requests_) {
    if (matches(request)) shown.push_back(&request);
  }
  return shown;
}

bool WatchModel::matches(const MCPRequestRecord& request) const {
  if (filter_.empty()) return true;
  const auto* session = sessionOf(request);
  std::string text = searchedText(request);
  if (session != nullptr) {
    for (const auto& target : session->targets) text += " " + target;
    text += " " + session->session.title;
  }
  const auto sameLetter = [](char one, char other) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return lower(one) == lower(other);
  };
  return std::search(text.begin(), text.end(), filter_.begin(), filter_.end(), sameLetter) != text.end();
}

const MCPRequestRecord* WatchModel::selectedRequest() const {
  const auto shown = chosen();
  return shown.empty() ? nullptr : shown[std::min(requestList_.selected, shown.size() - 1)];
}

const PersonSession* WatchModel::selectedSession() const {
  if (!inSessions_) {
    const auto* request = selectedRequest();
    return request == nullptr ? nullptr : sessionOf(*request);
  }
  return sessions_.empty() ? nullptr : &sessions_[std::min(sessionList_.selected, sessions_.size() - 1)];
}

const PersonSession* WatchModel::sessionOf(const MCPRequestRecord& request) const {
  if (!request.sessionSnapshot) return nullptr;
  const auto at = indexOf(sessions_, request.sessionSnapshot->sessionId, idOf);
  return at ? &sessions_[*at] : nullptr;
}

const MCPRequestRecord* WatchModel::lastRequestOf(const Uuid& session) const {
  const auto found = std::find_if(requests_.rbegin(), requests_.rend(), [&](const auto& request) {
    return request.sessionSnapshot && request.sessionSnapshot->sessionId == session;
  });
  return found == requests_.rend() ? nullptr : &*found;
}

WatchAction WatchModel::press(const WatchInput& input) {
  if (input.key == WatchKey::none) return {};
  message_.clear();
  if (input.key == WatchKey::character && input.character == "\f") return {.kind = WatchAction::Kind::redraw};
  auto action = isFiltering_           ? pressInFilter(input)
                : view_ != View::lists ? pressInText(input)
                                       : pressInLists(input);
  settle();
  return action;
}

WatchAction WatchModel::pressInFilter(const WatchInput& input) {
  if (input.key == WatchKey::character) {
    filter_ += input.character;
  } else if (input.key == WatchKey::backspace && !filter_.empty()) {
    while (filter_.size() > 1 && (static_cast<unsigned char>(filter_.back()) & 0xC0) == 0x80)
      filter_.pop_back();
    filter_.pop_back();
  } else if (input.key == WatchKey::enter) {
    isFiltering_ = false;
  } else if (input.key == WatchKey::escape) {
    isFiltering_ = false;
    filter_.clear();
  }
  return {};
}

WatchAction WatchModel::pressInText(const WatchInput& input) {
  const auto lines = (view_ == View::help ? helpText() : requestText()).size();
  const auto last = lines > textRows() ? lines - textRows() : 0;
  switch (input.key) {
    case WatchKey::up:
      textTop_ -= textTop_ == 0 ? 0 : 1;
      break;
    case WatchKey::down:
      ++textTop_;
      break;
    case WatchKey::pageUp:
      textTop_ -= std::min(textTop_, textRows());
      break;
    case WatchKey::pageDown:
      textTop_ += textRows();
      break;
    case WatchKey::home:
      textTop_ = 0;
      break;
    case WatchKey::end:
      textTop_ = last;
      break;
    default:
      if (input.character == "p" || input.character == "g") return pressInLists(input);
      view_ = View::lists;
  }
  textTop_ = std::min(textTop_, last);
  return {};
}

WatchAction WatchModel::pressInLists(const WatchInput& input) {
  if (input.key == WatchKey::tab) inSessions_ = !inSessions_;
  if (input.key == WatchKey::escape) filter_.clear();
  if (input.key == WatchKey::enter) {
    if (inSessions_) return jump();
    if (selectedRequest() == nullptr) return {};
    view_ = View::request;
    textTop_ = 0;
    follows_ = false;  // the one that is open stays the selected one
    selectedId_ = selectedRequest()->requestId;
  }
  if (input.key != WatchKey::character) {
    move(input);
    return {};
  }
  const auto& key = input.character;
  if (key == "q") return {.kind = WatchAction::Kind::quit};
  if (key == "p") return {.kind = WatchAction::Kind::pause};
  if (key == "r") return {.kind = WatchAction::Kind::resume, .loosens = true};
  if (key == "m") return permit(SessionPermission::managed);
  if (key == "a") return permit(SessionPermission::allowed);
  if (key == "o") return permit(SessionPermission::readOnly);
  if (key == "b") return permit(SessionPermission::blocked);
  if (key == "g") return jump();
  if (key == "k") move({.key = WatchKey::up});
  if (key == "j") move({.key = WatchKey::down});
  if (key == "/") isFiltering_ = true;
  if (key == "?") view_ = View::help;
  if (key == "?") textTop_ = 0;
  return {};
}

WatchAction WatchModel::permit(SessionPermission permission) {
  const auto* session = selectedSession();
  if (session == nullptr) {
    say("Select a session, or a request of one, first.", WatchStyle::warning);
    return {};
  }
  return {.kind = WatchAction::Kind::permit,
          .session = *session,
          .permission = permission,
          .loosens = isStricter(session->session.permission, permission)};
}

WatchAction WatchModel::jump() const {
  const auto* session = selectedSession();
  if (session == nullptr) return {};
  return {.kind = WatchAction::Kind::jump, .session = *session};
}

void WatchModel::move(const WatchInput& input) {
  auto& list = inSessions_ ? sessionList_ : requestList_;
  const auto count = inSessions_ ? sessions_.size() : chosen().size();
  const auto page = inSessions_ ? areas().sessions : areas().requests;
  const auto last = count == 0 ? 0 : count - 1;
  switch (input.key) {
    case WatchKey::up:
      list.selected -= list.selected == 0 ? 0 : 1;
      break;
    case WatchKey::down:
      list.selected = std::min(list.selected + 1, last);
      break;
    case WatchKey::pageUp:
      list.selected -= std::min(list.selected, page);
      break;
    case WatchKey::pageDown:
      list.selected = std::min(list.selected + page, last);
      break;
    case WatchKey::home:
      list.selected = 0;
      break;
    case WatchKey::end:
      list.selected = last;
      break;
    default:
      return;
  }
  if (inSessions_) return;
  follows_ = list.selected == last;
  selectedId_.reset();
  if (const auto* request = selectedRequest()) selectedId_ = request->requestId;
}

}  // namespace velmora
