// What the adapter hands back from a tab: its text, or a picture of it.
#pragma once

#include <cstdint>
#include <string>

#include "BridgeModels/BridgeEnums.h"
#include "BridgeModels/Records.h"

namespace velmora {

struct TerminalOutput {
  std::string text{};
  OutputSource source = OutputSource::visible;
  std::int64_t originalCharacterCount = 0;  ///< Characters (grapheme clusters) before any limiting.

  bool operator==(const TerminalOutput&) const = default;
};
BOOST_DESCRIBE_STRUCT(TerminalOutput, (), (text, source, originalCharacterCount))

struct TerminalScreenCapture {
  std::string imagePath{};  ///< Absolute path of the PNG file written.

  bool operator==(const TerminalScreenCapture&) const = default;
};
BOOST_DESCRIBE_STRUCT(TerminalScreenCapture, (), (imagePath))

}  // namespace velmora
