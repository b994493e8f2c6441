// Which session a user means: by its id, the beginning of its id, or a name that the terminal gives it.
#pragma once

#include <string_view>
#include <vector>

#include "BridgeModels/TerminalSession.h"

namespace velmora {

/// How many characters of an id users see; as many name a session among as many as anybody has.
inline constexpr std::size_t shortIdCharacters = 8;

/// The session that `name` means: a target of the terminal's ("%5"), a whole id or its beginning, of four
/// characters at least, in either case. Throws a StructuredError: invalidArgument when it means several,
/// sessionNotFound when it means none.
const TerminalSession& sessionNamed(std::string_view name, const std::vector<TerminalSession>& sessions);

}  // namespace velmora
