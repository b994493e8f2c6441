// One finding of `velmora doctor`.
#pragma once

#include <boost/describe/class.hpp>
#include <string>
#include <utility>

namespace velmora {

struct Check {
  std::string name{};  ///< What was looked at, in a word or two.
  bool ok = false;
  std::string finding{};   ///< A phrase without a full stop.
  std::string nextStep{};  ///< A sentence. Empty when `ok`.

  static Check passed(std::string name, std::string finding) {
    return {std::move(name), true, std::move(finding), {}};
  }
  static Check failed(std::string name, std::string finding, std::string nextStep) {
    return {std::move(name), false, std::move(finding), std::move(nextStep)};
  }
};

/// The same, as `velmora doctor --json` prints it.
struct CheckLine {
  std::string id{};     ///< The name with hyphens.
  std::string state{};  ///< "ok" or "fail".
  std::string text{};
  std::string advice{};
};
BOOST_DESCRIBE_STRUCT(CheckLine, (), (id, state, text, advice))

}  // namespace velmora
