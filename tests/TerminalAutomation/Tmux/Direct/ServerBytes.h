// What a tmux server may send, byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TerminalAutomation/Tmux/Direct/TmuxMessage.h"

namespace velmora::testing {

template <class Number>
std::string rawBytes(Number number) {
  return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

/// A message with a header that is right unless told otherwise.
inline std::string message(TmuxMessageType type, std::string_view body, std::uint32_t protocol = 8,
                           std::uint32_t tooLong = 0) {
  return rawBytes(type) + rawBytes(static_cast<std::uint32_t>(16 + body.size() + tooLong)) +
         rawBytes(protocol) + rawBytes(std::uint32_t{4711}) + std::string(body);
}

inline std::string numbers(std::initializer_list<std::int32_t> values) {
  std::string bytes;
  for (const std::int32_t value : values) bytes += rawBytes(value);
  return bytes;
}

inline std::string terminated(std::string_view text) { return std::string(text) + '\0'; }

inline std::string writeOpen(std::int32_t stream, std::int32_t descriptor) {
  return message(TmuxMessageType::writeOpen, numbers({stream, descriptor, 0}) + terminated("-"));
}
inline std::string write(std::int32_t stream, std::string_view bytes) {
  return message(TmuxMessageType::write, numbers({stream}) + std::string(bytes));
}
inline std::string readOpen(std::int32_t stream, std::int32_t descriptor) {
  return message(TmuxMessageType::readOpen, numbers({stream, descriptor}) + terminated("-"));
}
inline std::string exited(std::int32_t status = 0) {
  return message(TmuxMessageType::exit, numbers({status}));
}

/// A whole answer: some output, and the end.
inline std::string answerOf(std::string_view output, std::int32_t status = 0) {
  return writeOpen(1, 1) + write(1, output) + message(TmuxMessageType::writeClose, numbers({1})) +
         exited(status);
}

}  // namespace velmora::testing
