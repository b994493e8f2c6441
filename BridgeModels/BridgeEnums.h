// The enums that records and services share. Each travels in JSON under its case name.
#pragma once

#include "BridgeModels/WireNames.h"

namespace velmora {

// Whether the bridge accepts changing tool calls.
BOOST_DEFINE_ENUM_CLASS(MCPState, active, paused)

// The terminal application as last seen.
BOOST_DEFINE_ENUM_CLASS(TerminalState, notRunning, noWindows, available, unavailable)

// The user's permission for driving the terminal.
BOOST_DEFINE_ENUM_CLASS(AutomationPermission, unknown, granted, denied)

// What the bridge may do with a session.
BOOST_DEFINE_ENUM_CLASS(SessionPermission, managed, allowed, readOnly, blocked)

// Whether `one` withholds something that `other` gives; managed and allowed give the same.
constexpr bool isStricter(SessionPermission one, SessionPermission other) {
  return one >= SessionPermission::readOnly && one > other;
}

// Whether a session still maps to a live tab.
BOOST_DEFINE_ENUM_CLASS(SessionValidity, valid, stale, closed)

// How tabs that existed before the bridge are registered.
BOOST_DEFINE_ENUM_CLASS(SessionPolicy, safe, selective)

// How tmux is asked: over its server's own socket wherever that was proved to be the same, or always by the
// tmux program, for users who want it plain.
BOOST_DEFINE_ENUM_CLASS(TmuxTransportChoice, automatic, program)

// Whether windows that the bridge opens get the shell integration by themselves.
BOOST_DEFINE_ENUM_CLASS(ShellIntegrationChoice, automatic, off)

// Which text of a tab is read: the visible screen or the whole scroll-back.
BOOST_DEFINE_ENUM_CLASS(OutputSource, visible, history)

// Life of one recorded request.
BOOST_DEFINE_ENUM_CLASS(RequestStatus, received, processing, delivered, readComplete, rejected, failed,
                        cancelled)

}  // namespace velmora
