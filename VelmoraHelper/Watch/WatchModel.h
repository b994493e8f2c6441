// What `velmora watch` knows, and what its keys do. Pure: what happens comes in as calls, what is to be done
// goes out as actions, and what is shown is a screen of lines.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "LocalControl/PersonMessages.h"
#include "VelmoraHelper/Watch/WatchScreen.h"

namespace velmora {

/// What a key asks for that the model cannot do itself.
struct WatchAction {
  enum class Kind { none, quit, redraw, pause, resume, permit, jump };

  Kind kind = Kind::none;
  std::optional<PersonSession> session{};  ///< `permit` and `jump`.
  SessionPermission permission = SessionPermission::readOnly;
  /// It gives agents more, so the bridge will want the user's word.
  bool loosens = false;
};

/// Belongs to one thread. Texts may hold anything; the screen's lines do not.
class WatchModel {
 public:
  static constexpr std::size_t mostRequests = 1'000;  ///< The oldest give way.

  // What happened.
  void resize(WatchSize size);
  void bridgeServes(PersonLimits limits);
  void bridgeIsGone(std::string reason);
  void show(std::vector<PersonSession> sessions);
  /// Requests in any order; they are shown in that in which they ended. One that is known already is
  /// replaced, but keeps a command that only it had.
  void add(std::vector<MCPRequestRecord> requests, std::int64_t missed = 0);
  /// A line for the user, until the next key.
  void say(std::string message, WatchStyle style = WatchStyle::plain);

  WatchAction press(const WatchInput& input);

  WatchScreen screen() const;

 private:
  enum class View { lists, request, help };
  struct List {
    std::size_t selected = 0;
    std::size_t top = 0;
    void settle(std::size_t count, std::size_t visible);
  };
  struct Areas {
    std::size_t sessions;
    std::size_t requests;
  };

  WatchAction pressInFilter(const WatchInput& input);
  WatchAction pressInText(const WatchInput& input);
  WatchAction pressInLists(const WatchInput& input);
  WatchAction permit(SessionPermission permission);
  WatchAction jump() const;
  void move(const WatchInput& input);
  void settle();

  Areas areas() const;
  std::size_t textRows() const;  ///< Of a view that is one long text.
  std::vector<const MCPRequestRecord*> chosen() const;
  bool matches(const MCPRequestRecord& request) const;
  const MCPRequestRecord* selectedRequest() const;
  const PersonSession* selectedSession() const;
  const PersonSession* sessionOf(const MCPRequestRecord& request) const;
  const MCPRequestRecord* lastRequestOf(const Uuid& session) const;
  std::string targetOf(const MCPRequestRecord& request) const;

  WatchLine titleLine() const;
  WatchLine footer() const;
  WatchLine sessionLine(const PersonSession& session, bool isSelected) const;
  WatchLine requestLine(const MCPRequestRecord& request, bool isSelected) const;
  void addLists(WatchScreen& screen) const;
  std::vector<WatchLine> requestText() const;
  std::vector<WatchLine> helpText() const;

  WatchSize size_{};
  std::optional<PersonLimits> limits_{};  // nothing while there is no bridge
  std::string gone_ = "connecting";       // why there is none
  std::vector<PersonSession> sessions_{};
  std::deque<MCPRequestRecord> requests_{};
  std::int64_t missed_ = 0;
  std::string message_{};
  WatchStyle messageStyle_ = WatchStyle::plain;

  View view_ = View::lists;
  bool inSessions_ = false;  // which of the two lists keys act upon
  List sessionList_{};
  List requestList_{};
  bool follows_ = true;  // the newest request stays selected
  std::optional<Uuid> selectedId_{};
  std::size_t textTop_ = 0;
  bool isFiltering_ = false;
  std::string filter_{};
};

}  // namespace velmora
