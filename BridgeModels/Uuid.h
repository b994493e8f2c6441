// A 128-bit identifier, written as 36 upper-case hyphenated characters and read in either case.
#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

struct Uuid {
  std::array<std::uint8_t, 16> bytes{};

  /// A random (version 4) UUID from the system's entropy source. Thread-safe. Throws std::system_error
  /// when the system has no entropy to give.
  static Uuid random();

  /// The UUID that `text` spells (8-4-4-4-12 hexadecimal digits, either case), or nothing.
  static std::optional<Uuid> parse(std::string_view text);

  std::string toString() const;

  auto operator<=>(const Uuid&) const = default;
};

/// Where new UUIDs come from; injected so that tests can make ids predictable. Must be thread-safe.
using UuidSource = std::function<Uuid()>;

}  // namespace velmora

template <>
struct std::hash<velmora::Uuid> {
  std::size_t operator()(const velmora::Uuid& uuid) const noexcept;
};
