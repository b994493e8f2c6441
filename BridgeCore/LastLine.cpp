#include "BridgeCore/LastLine.h"

#include <string>

#include "BridgeModels/Text.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto tellEvery = 1s;
constexpr std::int64_t longestLine = 200;
constexpr std::int64_t enoughCharacters = 2000;

std::string lastLineOf(std::string_view text) {
  const auto end = text.find_last_not_of(" \t\r\n");
  if (end == std::string_view::npos) return {};
  text = text.substr(0, end + 1);
  return std::string(firstCharacters(text.substr(text.find_last_of('\n') + 1), longestLine));
}

}  // namespace

LastLine::LastLine(TerminalAutomating& automation, const SessionPermissionService& permissions,
                   const Uuid& sessionId, const Caller& caller, Now now)
    : automation_(automation),
      permissions_(permissions),
      sessionId_(sessionId),
      caller_(caller),
      now_(std::move(now)),
      next_(now_() + tellEvery) {}

void LastLine::tell() {
  if (!caller_.hearLastLine || now_() < next_) return;
  next_ = now_() + tellEvery;
  try {
    look();
  } catch (const std::exception&) {  // the wait's own looks and its answer tell what is wrong
  } catch (const StructuredError&) {
  }
}

void LastLine::look() {
  const auto session = permissions_.requireReadable(sessionId_, wireName(ToolName::readOutput));
  const auto output = automation_
                          .readOutput(OutputSource::visible, enoughCharacters, session.tty, session.windowId,
                                      caller_.asOfNow())
                          .get();
  caller_.hearLastLine(lastLineOf(output.text));
}

}  // namespace velmora
