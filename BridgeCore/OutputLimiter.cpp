#include "BridgeCore/OutputLimiter.h"

#include "BridgeModels/Text.h"

namespace velmora {

bool LimitedOutput::truncated() const { return characterCount(text) < originalCharacterCount; }

LimitedOutput OutputLimiter::suffix(std::string_view text, std::int64_t maximumCharacters) {
  const auto end = lastCharacters(text, maximumCharacters);
  return {std::string(end.text), end.totalCharacters};
}

}  // namespace velmora
