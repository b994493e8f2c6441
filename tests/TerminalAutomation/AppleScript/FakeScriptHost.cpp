// Stands in for velmora-script-host: no AppleScript, but handlers that do what can go wrong.
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "TerminalAutomation/AppleScript/ScriptFrames.h"

namespace {

using namespace velmora;

ScriptDescriptor described(const ScriptArgument& argument) {
  if (const auto* text = std::get_if<std::string>(&argument)) return {.text = *text};
  if (const auto* integer = std::get_if<std::int32_t>(&argument)) return {.integer = *integer};
  return {.boolean = std::get<bool>(argument)};
}

void say(const std::string& bytes) {
  if (::write(STDOUT_FILENO, bytes.data(), bytes.size()) < 0) std::_Exit(1);
}

class FakeEngine final : public ScriptEngine {
 public:
  bool compile(const std::string& source) override {
    source_ = source;
    ++requests_;
    const std::string condition = "hang when there is ";
    if (source.starts_with(condition) && std::filesystem::exists(source.substr(condition.size()))) ::pause();
    return source != "wrong";
  }

  ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments) override {
    ++requests_;
    // A file that the test names counts the calls that began.
    if (!arguments.empty() && std::holds_alternative<std::string>(arguments.front()) && handler != "echo") {
      std::ofstream(std::get<std::string>(arguments.front()), std::ios::app) << handler << '\n';
    }
    if (handler == "hang") ::pause();
    if (handler == "crash") ::raise(SIGKILL);
    if (handler == "garbage") say(std::string("\0\0\0\2no", 6));
    if (handler == "endless") say("\xff\xff\xff\xff");
    if (handler == "half") {
      say(std::string("\0\0\0\7{\"v", 7));
      std::_Exit(0);
    }
    if (handler == "slow") ::poll(nullptr, 0, 50);
    if (handler == "refused") return ScriptFailure{.number = -1743};
    if (handler == "nameless") return ScriptFailure{};
    if (handler == "process") return ScriptDescriptor{.integer = ::getpid()};
    if (handler == "source") return ScriptDescriptor{.text = source_};
    if (handler == "twice") say(encodeScriptReply(ScriptDescriptor{.text = "first"}, requests_));
    if (handler == "ahead") say(encodeScriptReply(ScriptDescriptor{.text = "later"}, requests_ + 1));
    ScriptDescriptor list;
    for (const auto& argument : arguments) list.items.push_back(described(argument));
    return list;
  }

  std::int32_t consent(const std::string& bundleIdentifier, bool asksUser) override {
    ++requests_;
    if (bundleIdentifier == "undecided" && asksUser) ::pause();
    return bundleIdentifier == "denied" ? -1743 : asksUser ? 0 : -1744;
  }

 private:
  std::string source_;
  std::int64_t requests_ = 0;
};

}  // namespace

int main() {
  FakeEngine engine;
  while (answerScriptRequest(engine, STDIN_FILENO, STDOUT_FILENO)) {
  }
}
