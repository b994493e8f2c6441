// The nine tools as one table: what each takes, what it returns, and what the parts of the bridge must know
// of it. Whatever depends on the tool walks this table; nobody else lists them all.
#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolName.h"
#include "BridgeModels/ToolPayloads.h"

namespace velmora {

struct ToolTraits {
  /// Types, opens or moves something. Such a call is refused while the bridge is paused, is recorded as
  /// delivered, and must never take effect twice.
  bool changesTerminal = false;
  /// The pause refuses it before its arguments are looked at. Sending is refused only once its session is
  /// known.
  bool pauseComesFirst = false;
  /// What it carries may be kept, so the history is written at once.
  bool sensitive = false;
};

/// A row of the table.
template <ToolName tool, class ToolInput, class ToolPayload>
struct Tool {
  static constexpr ToolName name = tool;
  using Input = ToolInput;
  using Payload = ToolPayload;

  ToolTraits traits{};
};

/// Every tool, in the order of ToolName.
inline constexpr std::tuple toolTable{
    Tool<ToolName::status, EmptyInput, StatusPayload>{},
    Tool<ToolName::listSessions, ListSessionsInput, SessionsPayload>{},
    Tool<ToolName::getActiveSession, EmptyInput, SessionPayload>{},
    Tool<ToolName::createSession, CreateSessionInput, SessionPayload>{
        {.changesTerminal = true, .pauseComesFirst = true}},
    Tool<ToolName::sendCommand, SendCommandInput, CommandPayload>{
        {.changesTerminal = true, .sensitive = true}},
    Tool<ToolName::sendKey, SendKeyInput, KeyPayload>{{.changesTerminal = true}},
    Tool<ToolName::readOutput, ReadOutputInput, OutputPayload>{{.sensitive = true}},
    Tool<ToolName::captureScreen, SessionTargetInput, CapturePayload>{},
    Tool<ToolName::focusSession, SessionTargetInput, FocusPayload>{
        {.changesTerminal = true, .pauseComesFirst = true}},
};

namespace detail {

template <std::size_t row, class Visitor>
constexpr decltype(auto) visitRow(Visitor& visitor) {
  return visitor(std::get<row>(toolTable));
}

template <class Visitor, std::size_t... row>
constexpr decltype(auto) visitRowOf(ToolName name, Visitor& visitor, std::index_sequence<row...>) {
  constexpr std::array visits{&visitRow<row, Visitor>...};
  return visits.at(static_cast<std::size_t>(name))(visitor);
}

template <std::size_t... row>
constexpr bool rowsAreInOrder(std::index_sequence<row...>) {
  return ((std::get<row>(toolTable).name == enumCases<ToolName>[row].value) && ...);
}

using ToolRows = std::make_index_sequence<std::tuple_size_v<decltype(toolTable)>>;

static_assert(ToolRows::size() == enumCases<ToolName>.size() && rowsAreInOrder(ToolRows{}));

}  // namespace detail

/// What `visitor` returns when it is called with the tool's row; it returns the same type for every row.
template <class Visitor>
constexpr decltype(auto) visitTool(ToolName name, Visitor&& visitor) {
  return detail::visitRowOf(name, visitor, detail::ToolRows{});
}

constexpr ToolTraits toolTraits(ToolName name) {
  return visitTool(name, [](const auto& tool) { return tool.traits; });
}

}  // namespace velmora
