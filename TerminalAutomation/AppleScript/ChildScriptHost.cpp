#include "TerminalAutomation/AppleScript/ChildScriptHost.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "System/SpawnChild.h"
#include "TerminalAutomation/PlatformError.h"

namespace velmora {

namespace {

constexpr auto area = "script";
constexpr std::chrono::seconds timeToCompile{30};

/// What the child has said so far; nothing more will come once `ended`.
struct Output {
  std::string bytes{};
  bool ended = false;
};

void drain(const FileDescriptor& from, Output& output) {
  std::array<char, 65536> block;
  while (true) {
    const ssize_t count = ::read(from.get(), block.data(), block.size());
    if (count > 0) {
      output.bytes.append(block.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
      output.ended = true;
      return;
    } else if (errno == EAGAIN) {
      return;
    }
  }
}

/// Takes the reply to the request `number` from `bytes`, once it is there; replies to earlier ones are
/// dropped. Throws ScriptFrameError.
std::optional<ScriptReply> replyIn(std::string& bytes, std::int64_t number) {
  while (const auto content = scriptFrameIn(bytes)) {
    auto reply = decodeScriptReply(*content);
    bytes.erase(0, static_cast<std::size_t>(content->end() - std::string_view(bytes).begin()));
    if (reply.number > number) throw ScriptFrameError("it answers what was not asked");
    if (reply.number == number) return std::move(reply.message);
  }
  return std::nullopt;
}

int millisecondsUntil(ScriptHost::Deadline deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
  return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
}

}  // namespace

ChildScriptHost::ChildScriptHost(std::filesystem::path program, const Environment& environment, Log log)
    : program_(std::move(program)), environment_(environmentList(environment)), log_(std::move(log)) {}

bool ChildScriptHost::compile(const std::string& source) {
  source_ = source;
  const ScriptReply reply = start(std::chrono::steady_clock::now() + timeToCompile);
  return std::holds_alternative<ScriptDescriptor>(reply);
}

ScriptReply ChildScriptHost::call(const std::string& handler, const std::vector<ScriptArgument>& arguments,
                                  Deadline deadline) {
  return request(ScriptCallRequest{.handler = handler, .arguments = arguments}, deadline);
}

std::int64_t ChildScriptHost::consent(const std::string& bundleIdentifier, bool asksUser, Deadline deadline) {
  // The question belongs to the process that sends the events, and goes away when that is ended.
  const auto reply = request(ScriptConsentRequest{bundleIdentifier, asksUser}, deadline);
  if (const auto* failure = std::get_if<ScriptFailure>(&reply)) {
    return failure->number.value_or(platformErrorCode::scriptError);
  }
  return std::get<ScriptDescriptor>(reply).integer;
}

/// Asks the child, or a new one.
ScriptReply ChildScriptHost::request(const ScriptRequest& request, Deadline deadline) {
  if (child_ && !isIdle()) end(platformErrorCode::connectionInvalid, "ended by itself, or spoke unasked");
  if (!child_) {
    const ScriptReply started = start(deadline);
    if (const auto* failure = std::get_if<ScriptFailure>(&started)) return *failure;
  }
  return ask(request, deadline);
}

void ChildScriptHost::cancel() noexcept {
  // The byte is never read, so every call sees it.
  if (!cancelled_.exchange(true)) [[maybe_unused]]
    const ssize_t written = ::write(cancelPipe_.write.get(), "x", 1);
}

/// A new child that has compiled the script, or the failure of that.
ScriptReply ChildScriptHost::start(Deadline deadline) {
  if (cancelled_) return ScriptFailure{.number = platformErrorCode::userCancelled};
  try {
    child_ = std::make_unique<LastingChild>(program_, std::vector<std::string>{}, environment_);
  } catch (const std::system_error& error) {
    log_.error(area, error.what());
    return ScriptFailure{.number = platformErrorCode::scriptError};
  }
  ScriptReply reply = ask(ScriptCompileRequest{source_}, deadline);
  const auto* compiled = std::get_if<ScriptDescriptor>(&reply);
  if (compiled == nullptr || compiled->boolean) return reply;
  return end(platformErrorCode::scriptError, "cannot compile the script");
}

ScriptReply ChildScriptHost::ask(const ScriptRequest& request, Deadline deadline) {
  const std::string frame = encodeScriptRequest(request, ++lastRequest_);
  std::string_view rest = frame;
  const SigpipeBlock sigpipeBlock;
  Output output;
  while (true) {
    std::array<pollfd, 3> polled{{{cancelPipe_.read.get(), POLLIN, 0},
                                  {child_->output().get(), POLLIN, 0},
                                  {rest.empty() ? -1 : child_->input().get(), POLLOUT, 0}}};
    ::poll(polled.data(), polled.size(), millisecondsUntil(deadline));
    if (cancelled_) return end(platformErrorCode::userCancelled, "the bridge is shutting down");
    if (polled[2].revents != 0) rest = writeTo(child_->input(), rest);
    if (polled[1].revents != 0) drain(child_->output(), output);
    try {
      if (auto reply = replyIn(output.bytes, lastRequest_)) {
        if (!output.bytes.empty()) end(platformErrorCode::connectionInvalid, "said more than it was asked");
        return *std::move(reply);
      }
    } catch (const ScriptFrameError& error) {
      return end(platformErrorCode::connectionInvalid, "gave no reply: " + std::string(error.what()));
    }
    if (output.ended) return end(platformErrorCode::connectionInvalid, "ended in the middle of a call");
    if (std::chrono::steady_clock::now() >= deadline) {
      return end(platformErrorCode::timedOut, "did not answer in time");
    }
  }
}

ScriptFailure ChildScriptHost::end(std::int64_t number, const std::string& reason) {
  child_.reset();
  if (number != platformErrorCode::userCancelled)
    log_.warning(area, program_.filename().string() + " " + reason);
  return {.number = number};
}

/// Whether the child runs and has nothing to say, as it should between two calls.
bool ChildScriptHost::isIdle() const {
  pollfd polled{child_->output().get(), POLLIN, 0};
  return ::poll(&polled, 1, 0) == 0;
}

}  // namespace velmora
