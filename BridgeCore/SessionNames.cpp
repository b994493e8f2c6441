#include "BridgeCore/SessionNames.h"

#include <algorithm>
#include <string>

#include "BridgeModels/StructuredError.h"

namespace velmora {

namespace {

constexpr std::size_t fewestCharacters = 4;

std::string upperCase(std::string_view text) {
  std::string result(text);
  for (char& character : result) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
  }
  return result;
}

bool isMeant(const TerminalSession& session, std::string_view name, const std::string& idBeginning) {
  const auto& targets = session.targets;
  return std::find(targets.begin(), targets.end(), name) != targets.end() ||
         (idBeginning.size() >= fewestCharacters && session.sessionId.toString().starts_with(idBeginning));
}

}  // namespace

const TerminalSession& sessionNamed(std::string_view name, const std::vector<TerminalSession>& sessions) {
  const auto idBeginning = upperCase(name);
  const TerminalSession* found = nullptr;
  for (const auto& session : sessions) {
    if (!isMeant(session, name, idBeginning)) continue;
    if (found != nullptr) {
      throw StructuredError{.code = ErrorCode::invalidArgument,
                            .message = "\"" + std::string(name) + "\" means more than one session.",
                            .operation = "session_lookup",
                            .recoverySuggestion = "Write more of the session's id."};
    }
    found = &session;
  }
  if (found != nullptr) return *found;
  throw StructuredError{.code = ErrorCode::sessionNotFound,
                        .message = "There is no session \"" + std::string(name) + "\".",
                        .operation = "session_lookup",
                        .recoverySuggestion = "`velmora sessions` lists them."};
}

}  // namespace velmora
