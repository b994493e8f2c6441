// The names that enum cases carry in JSON. A described enum's case travels under its own name (without the
// trailing underscore that keeps a C++ keyword apart); an enum with other names specialises `enumCases`.
#pragma once

#include <array>
#include <boost/describe/enum.hpp>
#include <boost/describe/enumerators.hpp>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace velmora {

template <class Enum>
struct EnumCase {
  Enum value;
  std::string_view wireName;
};

namespace detail {

constexpr std::string_view withoutTrailingUnderscore(std::string_view name) {
  return name.ends_with('_') ? name.substr(0, name.size() - 1) : name;
}

template <class Enum, template <class...> class List, class... Enumerator>
constexpr auto casesOf(List<Enumerator...>) {
  return std::array{EnumCase<Enum>{Enumerator::value, withoutTrailingUnderscore(Enumerator::name)}...};
}

// `count` of the cases, from `first` on.
template <std::size_t first, std::size_t count, class Cases>
constexpr auto someOf(const Cases& cases) {
  std::array<typename Cases::value_type, count> some{};
  for (std::size_t i = 0; i < count; ++i) some[i] = cases[first + i];
  return some;
}

}  // namespace detail

/// Every case of `Enum` with its wire name, in the declared order.
template <class Enum>
inline constexpr auto enumCases = detail::casesOf<Enum>(boost::describe::describe_enumerators<Enum>{});

/// Further cases, which only the extended form of the tools has.
template <class Enum>
inline constexpr std::array<EnumCase<Enum>, 0> extendedCases{};

template <class Enum>
requires std::is_enum_v<Enum>
constexpr std::string_view wireName(Enum value) {
  for (const auto& entry : enumCases<Enum>) {
    if (entry.value == value) return entry.wireName;
  }
  for (const auto& entry : extendedCases<Enum>) {
    if (entry.value == value) return entry.wireName;
  }
  return {};
}

template <class Enum>
requires std::is_enum_v<Enum>
constexpr std::optional<Enum> fromWireName(std::string_view name) {
  for (const auto& entry : enumCases<Enum>) {
    if (entry.wireName == name) return entry.value;
  }
  for (const auto& entry : extendedCases<Enum>) {
    if (entry.wireName == name) return entry.value;
  }
  return std::nullopt;
}

}  // namespace velmora
