// A file of its own although short: the bridge writes what the helper reads, and nothing else joins them.
#pragma once

namespace velmora {

/// Beside the bridge's socket, from the runtime folder on, two lines for `velmora doctor`: how it asks tmux
/// in a few words, empty while that is not known; and the socket of the tmux server.
inline constexpr auto tmuxWayFile = "app.velmora.Velmora/tmux-way";

}  // namespace velmora
