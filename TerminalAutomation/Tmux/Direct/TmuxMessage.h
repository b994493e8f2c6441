// The messages that tmux's client and server exchange over the server's socket: their numbers, their header
// and their limits, as far as a client without a terminal has to do with them. All of it is the same in
// tmux 3.2 to 3.8 on a little-endian processor, except that up to 3.5a the upper half of `length` held flags:
// a message that carries a descriptor has a bit set there, and no server sends one.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

enum class TmuxMessageType : std::uint32_t {
  version = 12,
  identifyTerminal = 101,
  identifyTtyName = 102,
  identifyDone = 106,
  identifyProcess = 107,
  identifyFolder = 108,
  identifyFeatures = 109,
  identifyFlags = 111,
  command = 200,
  exit = 203,
  shutdown = 210,
  flags = 218,
  readOpen = 300,
  read = 301,
  readDone = 302,
  writeOpen = 303,
  write = 304,
  writeReady = 305,
  writeClose = 306,
  readCancel = 307,
};

struct TmuxMessageHeader {
  TmuxMessageType type;
  std::uint32_t length;  ///< Of the whole message.
  std::uint32_t protocol;
  std::uint32_t process;  ///< The sender's.
};
static_assert(sizeof(TmuxMessageHeader) == 16);

inline constexpr std::uint32_t tmuxProtocol = 8;
inline constexpr std::size_t largestTmuxMessage = 16'384;
inline constexpr std::size_t largestTmuxBody = largestTmuxMessage - sizeof(TmuxMessageHeader);

/// The header's halves lie the other way round elsewhere, in another way for each version.
inline constexpr bool processorSpeaksTmux = std::endian::native == std::endian::little;

}  // namespace velmora
