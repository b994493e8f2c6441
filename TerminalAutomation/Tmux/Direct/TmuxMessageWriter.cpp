#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"

#include <algorithm>
#include <stdexcept>

namespace velmora {

namespace {

/// The client's flag that it takes UTF-8: what the option -u says. The others are the server's or a
/// terminal's.
constexpr std::uint64_t utf8Flag = 0x10000;

template <class Number>
std::string bytesOf(Number number) {
  return std::string(reinterpret_cast<const char*>(&number), sizeof number);
}

std::string_view upToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace

void TmuxMessageWriter::identify(const TmuxClientIdentity& identity) {
  using Type = TmuxMessageType;
  add(Type::identifyFlags, bytesOf(utf8Flag));
  addText(Type::identifyTerminal, identity.terminal);
  addNumber(Type::identifyFeatures, 0);
  addText(Type::identifyTtyName, "");
  addText(Type::identifyFolder, identity.folder);
  addNumber(Type::identifyProcess, static_cast<std::int32_t>(identity.process));
  add(Type::identifyDone, {});
}

bool TmuxMessageWriter::commandFits(const std::vector<std::string>& arguments) {
  std::size_t size = sizeof(std::int32_t);
  for (const std::string& argument : arguments) size += upToNul(argument).size() + 1;
  return size <= largestTmuxBody;
}

void TmuxMessageWriter::command(const std::vector<std::string>& arguments) {
  if (!commandFits(arguments)) throw std::length_error("the command does not fit in a message");
  std::string body = bytesOf(static_cast<std::int32_t>(arguments.size()));
  for (const std::string& argument : arguments) (body += upToNul(argument)) += '\0';
  add(TmuxMessageType::command, body);
}

void TmuxMessageWriter::input(std::int32_t stream, std::string_view bytes) {
  constexpr std::size_t most = largestTmuxBody - sizeof stream;
  std::string body;
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, most);
    body = bytesOf(stream);
    body += part;
    add(TmuxMessageType::read, body);
    bytes.remove_prefix(part.size());
  }
  readDone(stream, 0);
}

void TmuxMessageWriter::readDone(std::int32_t stream, std::int32_t error) {
  addPair(TmuxMessageType::readDone, stream, error);
}

void TmuxMessageWriter::writeReady(std::int32_t stream, std::int32_t error) {
  addPair(TmuxMessageType::writeReady, stream, error);
}

void TmuxMessageWriter::sent(std::size_t count) {
  sent_ += count;
  if (sent_ != bytes_.size()) return;
  bytes_.clear();
  sent_ = 0;
}

void TmuxMessageWriter::add(TmuxMessageType type, std::string_view body) {
  bytes_ +=
      bytesOf(TmuxMessageHeader{.type = type,
                                .length = static_cast<std::uint32_t>(sizeof(TmuxMessageHeader) + body.size()),
                                .protocol = tmuxProtocol,
                                .process = process_});
  bytes_ += body;
}

void TmuxMessageWriter::addNumber(TmuxMessageType type, std::int32_t number) { add(type, bytesOf(number)); }

void TmuxMessageWriter::addText(TmuxMessageType type, std::string_view text) {
  std::string body(upToNul(text).substr(0, largestTmuxBody - 1));
  add(type, body += '\0');
}

void TmuxMessageWriter::addPair(TmuxMessageType type, std::int32_t first, std::int32_t second) {
  add(type, bytesOf(first) + bytesOf(second));
}

}  // namespace velmora
