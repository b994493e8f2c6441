// Whatever a tmux server says, and however the bytes are cut, the client's part of the conversation stays in
// shape.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "TerminalAutomation/Tmux/Direct/TmuxConversation.h"

namespace {

using namespace velmora;

// A server up to tmux 3.6 ends over anything else.
void checkSaid(std::string_view said) {
  while (!said.empty()) {
    TmuxMessageHeader header;
    if (said.size() < sizeof header) std::abort();
    std::memcpy(&header, said.data(), sizeof header);
    if (header.protocol != tmuxProtocol || header.length > said.size()) std::abort();
    const bool ofTwoNumbers =
        header.type == TmuxMessageType::readDone || header.type == TmuxMessageType::writeReady;
    const bool inputBytes =
        header.type == TmuxMessageType::read && header.length > 20 && header.length <= 16'384;
    if (!inputBytes && !(ofTwoNumbers && header.length == 24)) std::abort();
    said.remove_prefix(header.length);
  }
}

void converse(std::string_view bytes, std::size_t part) {
  const TmuxInvocation invocation{.arguments = {"list-panes"},
                                  .standardInput = std::string(20'000, 'x'),
                                  .deadline = {},
                                  .outputLimit = 1'000};
  TmuxConversation conversation(invocation, {.process = 1, .terminal = "xterm", .folder = "/"});
  conversation.sent(conversation.unsent().size());
  while (!bytes.empty() && !conversation.ended()) {
    const auto space = conversation.space();
    const std::size_t count = std::min({part, space.size(), bytes.size()});
    if (count == 0) std::abort();
    std::copy_n(bytes.begin(), count, space.begin());
    bytes.remove_prefix(count);
    conversation.received(count);
    checkSaid(conversation.unsent());
    conversation.sent(conversation.unsent().size());
  }
  if (conversation.answer().output.size() > invocation.outputLimit) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    converse(bytes, std::size_t{data[0]} + 1);
  } catch (const TmuxUnexpected&) {
    // Given up on.
  }
  return 0;
}
