#include "TerminalAutomation/Tmux/Direct/TmuxMessageReader.h"

#include <array>
#include <cstring>
#include <string>

namespace velmora {

namespace {

using Type = TmuxMessageType;

/// What a body may hold after its numbers.
enum class Rest { none, text, bytes };

struct Shape {
  Type type;
  std::size_t numbers;  ///< 32 bits each.
  Rest rest;
  bool mayBeEmpty = false;
};

// The shapes that servers from 3.2 on send to a client that has no session.
constexpr std::array shapes{
    Shape{Type::exit, 1, Rest::text, /*mayBeEmpty=*/true},
    Shape{Type::shutdown, 1, Rest::text, /*mayBeEmpty=*/true},
    Shape{Type::flags, 2, Rest::none},
    Shape{Type::readOpen, 2, Rest::text},    // stream, descriptor; the text is a path
    Shape{Type::readCancel, 1, Rest::none},  // stream
    Shape{Type::writeOpen, 3, Rest::text},   // stream, descriptor, flags of open; the text is a path
    Shape{Type::write, 1, Rest::bytes},      // stream
    Shape{Type::writeClose, 1, Rest::none},  // stream
};

[[noreturn]] void refuse(const char* why, Type type) {
  throw TmuxUnexpected(why + std::string(" (message ") + std::to_string(static_cast<std::uint32_t>(type)) +
                       ")");
}

[[noreturn]] void refuseProtocol() {
  throw TmuxUnexpected("the server speaks another version of the protocol");
}

const Shape& shapeOf(Type type) {
  for (const Shape& shape : shapes) {
    if (shape.type == type) return shape;
  }
  if (type == Type::version) refuseProtocol();
  refuse("the server sent a message that is not known", type);
}

/// Takes the next number off `body`; 0 when there is none.
std::int32_t takeNumber(std::string_view& body) {
  std::int32_t number = 0;
  if (body.size() < sizeof number) return 0;
  std::memcpy(&number, body.data(), sizeof number);
  body.remove_prefix(sizeof number);
  return number;
}

TmuxServerMessage takenApart(Type type, std::string_view body) {
  const Shape& shape = shapeOf(type);
  TmuxServerMessage message{.type = type};
  if (body.empty() && shape.mayBeEmpty) return message;
  if (body.size() < shape.numbers * sizeof(std::int32_t))
    refuse("the server sent a message that is too short", type);
  message.stream = takeNumber(body);
  if (shape.numbers > 1) message.descriptor = takeNumber(body);
  if (shape.numbers > 2) takeNumber(body);

  message.rest = body;
  if (shape.rest == Rest::bytes || body.empty()) return message;
  if (shape.rest == Rest::none) refuse("the server sent a message that is too long", type);
  if (!body.ends_with('\0')) refuse("the server sent a text without its end", type);
  message.rest = body.substr(0, body.find('\0'));
  return message;
}

}  // namespace

TmuxMessageReader::TmuxMessageReader() : buffer_(4 * largestTmuxMessage) {}

std::span<char> TmuxMessageReader::space() {
  std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  return {buffer_.data() + end_, buffer_.size() - end_};
}

std::optional<TmuxServerMessage> TmuxMessageReader::next() {
  TmuxMessageHeader header;
  if (end_ - begin_ < sizeof header) return std::nullopt;
  std::memcpy(&header, buffer_.data() + begin_, sizeof header);
  if (header.length < sizeof header || header.length > largestTmuxMessage)
    refuse("the server sent a message of a wrong length", header.type);
  if (header.protocol != tmuxProtocol) refuseProtocol();
  if (end_ - begin_ < header.length) return std::nullopt;
  const std::string_view body(buffer_.data() + begin_ + sizeof header, header.length - sizeof header);
  begin_ += header.length;
  return takenApart(header.type, body);
}

}  // namespace velmora
