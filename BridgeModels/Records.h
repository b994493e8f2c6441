// What the JSON reader and writer need to know of a record beyond its described members: which of them
// take their default when the key is missing. Optional members are absent then; all others are required.
#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/members.hpp>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace velmora {

/// A struct whose public members are described with BOOST_DESCRIBE_STRUCT, in wire order.
template <class T>
concept DescribedRecord = std::is_class_v<T> && boost::describe::has_describe_members<T>::value;

template <class Record>
using MembersOf = boost::describe::describe_members<Record, boost::describe::mod_public>;

/// Says of a record that every missing key takes the member's default.
struct EveryMember {};

/// The members (as a tuple of member pointers, or EveryMember) whose missing key takes the default.
template <class Record>
inline constexpr auto defaultedMembers = std::tuple<>{};

/// The members that only the extended form of the tools has: a tuple of pointers to std::optional members.
/// Whoever does not ask for that form neither gives nor gets them.
template <class Record>
inline constexpr auto extendedMembers = std::tuple<>{};

namespace detail {

template <class A, class B>
constexpr bool sameMember(A a, B b) {
  if constexpr (std::is_same_v<A, B>) {
    return a == b;
  } else {
    return false;
  }
}

}  // namespace detail

template <class Record, class Member>
constexpr bool takesDefault(Member Record::*member) {
  using Defaulted = std::remove_cv_t<decltype(defaultedMembers<Record>)>;
  if constexpr (std::is_same_v<Defaulted, EveryMember>) {
    return true;
  } else {
    return std::apply([member](auto... listed) { return (detail::sameMember(member, listed) || ...); },
                      defaultedMembers<Record>);
  }
}

template <class Record, class Member>
constexpr bool isExtended(Member Record::*member) {
  return std::apply([member](auto... listed) { return (detail::sameMember(member, listed) || ...); },
                    extendedMembers<Record>);
}

/// Leaves out what only the extended form has.
template <class Record>
void clearExtended(Record& record) {
  std::apply([&record](auto... member) { ((record.*member).reset(), ...); }, extendedMembers<Record>);
}

}  // namespace velmora
