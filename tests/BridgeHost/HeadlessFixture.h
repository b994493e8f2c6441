// The program `velmora-headless` as a user runs it, and a tmux server of the test's own: both as processes,
// in one temporary folder that is home, data, runtime and tmux directory. Teardown ends both.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "LocalControl/LocalControlClient.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora::testing {

class HeadlessFixture : public ::testing::Test {
 protected:
  HeadlessFixture() {
    const char* const path = std::getenv("PATH");
    environment = {{"PATH", path == nullptr ? "/usr/bin:/bin" : path},
                   {"HOME", directory.path().string()},
                   {"SHELL", "/bin/bash"},
                   {"LANG", "C.UTF-8"},
                   {"TERM", "xterm-256color"},
                   {"XDG_RUNTIME_DIR", directory.path().string()},
                   {"XDG_DATA_HOME", (directory / "data").string()},
                   {"XDG_CONFIG_HOME", (directory / "config").string()},
                   {"TMUX_TMPDIR", directory.path().string()}};
    for (const auto* file : {".bashrc", ".bash_profile"}) writeFile(directory / file, "PS1='$ '\n");
  }

  void TearDown() override {
    if (headless) {
      headless->signal(SIGTERM);
      EXPECT_EQ(headless->wait(), 0);
    }
    if (!std::filesystem::exists(tmuxSocket())) return;
    const auto server = tmux({"display-message", "-p", "#{pid}"});
    if (server.empty()) return;  // it has ended, and left its socket behind
    tmux({"kill-server"});
    const auto process = static_cast<pid_t>(std::stol(server));
    EXPECT_TRUE(eventually([&] { return !isAlive(process); })) << "the tmux server has not ended";
  }

  std::filesystem::path socketPath() const { return directory / "app.velmora.Velmora/control-v1.sock"; }
  std::filesystem::path tmuxSocket() const {
    return directory / ("tmux-" + std::to_string(::geteuid())) / "default";
  }
  std::filesystem::path historyFile() const { return directory / "data/Velmora/history.json"; }

  void writeSettings(const PrivacyRetentionSettings& settings) {
    writeFile(directory / "data/Velmora/settings.json",
              R"({"schemaVersion":1,"settings":)" + encodeJson(settings) + "}");
  }

  /// Runs tmux on the private server; returns its output without the last line end.
  std::string tmux(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"tmux", "-f", "/dev/null", "-S", tmuxSocket().string()});
    ChildProgram program(std::move(arguments), environment);
    auto output = program.restOfOutput();
    program.wait();
    if (output.ends_with('\n')) output.pop_back();
    return output;
  }
  void startTmux() {
    std::filesystem::create_directories(tmuxSocket().parent_path());
    std::filesystem::permissions(tmuxSocket().parent_path(), std::filesystem::perms::owner_all);
    tmux({"new-session", "-d", "-s", "main", "-x", "100", "-y", "30"});
  }
  std::string paneOf(const std::string& tty) {
    return tmux({"list-panes", "-a", "-f", "#{==:#{pane_tty}," + tty + "}", "-F", "#{pane_id}"});
  }

  std::unique_ptr<ChildProgram> launch(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), VELMORA_BIN "/velmora-headless");
    return std::make_unique<ChildProgram>(std::move(arguments), environment);
  }
  void startHeadless() {
    headless = launch();
    ASSERT_EQ(headless->readLine(), socketPath().string());
  }

  /// Ends the program as a service manager does; returns its exit status.
  int endHeadless() {
    headless->signal(SIGTERM);
    const int status = headless->wait();
    lastOutput = headless->restOfOutput();
    headless.reset();
    return status;
  }

  LocalControlResponse call(LocalControlClient& client, ToolName tool, JSONObject arguments = {}) const {
    return client.send({.requestId = Uuid::random(),
                        .client = {"tester", "1.0", ::getpid()},
                        .operation = tool,
                        .arguments = std::move(arguments)});
  }
  LocalControlResponse call(ToolName tool, JSONObject arguments = {}) const {
    LocalControlClient client(socketPath());
    return call(client, tool, std::move(arguments));
  }

  /// The payload of a call that must succeed; throws when it does not, which fails the test.
  JSONValue payload(ToolName tool, JSONObject arguments = {}) const {
    auto response = call(tool, std::move(arguments));
    if (response.ok) return std::move(response.data).value();
    throw std::runtime_error(std::string(wireName(tool)) + ": " + response.error.value().message);
  }
  static const JSONValue& at(const JSONValue& value, std::string_view key) {
    const auto* found = value.find(key);
    return found != nullptr ? *found : throw std::out_of_range(std::string(key));
  }
  static std::string textAt(const JSONValue& value, std::string_view key) {
    return std::get<std::string>(at(value, key).storage);
  }

  JSONValue createSession() const { return at(payload(ToolName::createSession), "session"); }
  std::string historyOf(const std::string& sessionId) const {
    return textAt(payload(ToolName::readOutput, {{"sessionId", sessionId}, {"source", "history"}}), "text");
  }
  void expectInHistory(const std::string& sessionId, const std::string& text) const {
    EXPECT_TRUE(eventually([&] { return historyOf(sessionId).find(text) != std::string::npos; }))
        << text << " is not in:\n"
        << historyOf(sessionId);
  }

  TemporaryDirectory directory;
  Environment environment;
  std::unique_ptr<ChildProgram> headless;
  std::string lastOutput;  ///< What `endHeadless` found on standard output after the first line.
};

}  // namespace velmora::testing
