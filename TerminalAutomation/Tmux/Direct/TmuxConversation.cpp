#include "TerminalAutomation/Tmux/Direct/TmuxConversation.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace velmora {

namespace {

/// More streams than any command list that fits in a message can open.
constexpr int mostStreams = 4'096;

}  // namespace

TmuxConversation::TmuxConversation(const TmuxInvocation& invocation, const TmuxClientIdentity& identity)
    : invocation_(invocation), writer_(identity.process) {
  writer_.identify(identity);
  writer_.command(invocation.arguments);
  opening_ = writer_.unsent().size();
}

void TmuxConversation::sent(std::size_t count) {
  writer_.sent(count);
  sent_ += count;
}

void TmuxConversation::received(std::size_t count) {
  reader_.received(count);
  while (!ended_) {
    const auto message = reader_.next();
    if (!message) return;
    take(*message);
  }
}

void TmuxConversation::take(const TmuxServerMessage& message) {
  using Type = TmuxMessageType;
  switch (message.type) {
    case Type::writeOpen:
      return openForWriting(message);
    case Type::write:
      return write(message);
    case Type::writeClose:
      std::erase_if(sinks_, [&message](const Sink& sink) { return sink.stream == message.stream; });
      return;
    case Type::readOpen:
      return openForReading(message);
    case Type::exit:
    case Type::shutdown:
      return exit(message);
    default:
      // flags: nothing that matters here. readCancel: the input was sent whole already.
      return;
  }
}

void TmuxConversation::openForWriting(const TmuxServerMessage& message) {
  countStream();
  std::int32_t error = EACCES;  // a file
  if (message.descriptor == STDOUT_FILENO || message.descriptor == STDERR_FILENO) {
    const bool isOutput = message.descriptor == STDOUT_FILENO;
    bool& used = isOutput ? outputUsed_ : errorUsed_;
    error = used ? EBADF : 0;  // the program, too, has each of its streams to give once
    if (!used) sinks_.push_back({message.stream, isOutput ? &answer_.output : &answer_.errorOutput});
    used = true;
  }
  writer_.writeReady(message.stream, error);
}

void TmuxConversation::openForReading(const TmuxServerMessage& message) {
  countStream();
  const bool isInput = message.descriptor == STDIN_FILENO;
  if (isInput && !inputUsed_) {
    inputUsed_ = true;
    writer_.input(message.stream, invocation_.standardInput ? std::string_view(*invocation_.standardInput)
                                                            : std::string_view());
  } else {
    writer_.readDone(message.stream, isInput ? EBADF : EACCES);
  }
}

void TmuxConversation::write(const TmuxServerMessage& message) {
  const auto sink = std::find_if(sinks_.begin(), sinks_.end(),
                                 [&message](const Sink& each) { return each.stream == message.stream; });
  if (sink == sinks_.end()) throw TmuxUnexpected("the server wrote to a stream that it had not opened");
  if (sink->text->size() + message.rest.size() > invocation_.outputLimit) {
    answer_.end = TmuxAnswer::End::outputTooLarge;
    ended_ = true;
    return;
  }
  *sink->text += message.rest;
}

void TmuxConversation::exit(const TmuxServerMessage& message) {
  answer_.end = TmuxAnswer::End::exited;
  answer_.exitStatus = message.stream & 0xff;  // all that a program's exit tells
  if (!message.rest.empty()) (answer_.errorOutput += message.rest) += '\n';
  ended_ = true;
}

void TmuxConversation::countStream() {
  if (++streams_ > mostStreams) throw TmuxUnexpected("the server opened streams without end");
}

}  // namespace velmora
