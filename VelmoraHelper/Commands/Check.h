// One finding of `velmora doctor`.
#pragma once

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

}  // namespace velmora
