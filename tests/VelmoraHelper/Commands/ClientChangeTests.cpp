// `velmora config --apply` and `--remove`, client by client.
#include "VelmoraHelper/Commands/ClientChange.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::writeFile;

class ClientChangeTest : public testing::CommandFixture {
 protected:
  CommandContext surroundings() {
    auto made = context();
    made.environment = {{"HOME", home.path().string()}};
    made.files = files;
    made.now = [] { return Date{}; };
    made.runProgram = [this](const std::vector<std::string>& command) { return runs(command); };
    return made;
  }
  ExitStatus change(const std::string& client, ConfigAction action = {}, ToolForm form = ToolForm::plain,
                    const std::optional<std::string>& host = {}) {
    out.str("");
    err.str("");
    return changeConfig(surroundings(), client, action, form, host);
  }
  std::filesystem::path fileOf(std::string_view client) {
    PosixFileSystem real;
    return clientFile(*findMcpClient(client), surroundings().environment, real)->path;
  }
  // The clients whose file is written here.
  static std::vector<std::string> clients() {
    std::vector<std::string> ids;
    for (const auto& client : mcpClients()) {
      if (!client.servers.empty() && client.makeCommands == nullptr) ids.emplace_back(client.id);
    }
    return ids;
  }

  TemporaryDirectory home;
  std::shared_ptr<testing::HookedFileSystem> files = std::make_shared<testing::HookedFileSystem>();
  std::vector<std::vector<std::string>> commands;
  std::function<ProgramAnswer(const std::vector<std::string>&)> runs = [](const auto&) {
    return ProgramAnswer{};
  };
};

constexpr ConfigAction apply{};
constexpr ConfigAction removal{.removes = true};

TEST_F(ClientChangeTest, GivesEveryClientANewFileWithItsSnippet) {
  for (const auto& client : clients()) {
    EXPECT_EQ(change(client), ExitStatus::success) << err.str();
    EXPECT_EQ(contentOf(fileOf(client)), snippetFor(*findMcpClient(client), program.string()) + "\n");
    EXPECT_THAT(out.str(), HasSubstr("added \"terminal\" to " + fileOf(client).string() + ".\n"));
    EXPECT_THAT(out.str(), HasSubstr("Next: restart " + std::string(findMcpClient(client)->name)));
  }
  EXPECT_EQ(clients().size(), 8u);
}

TEST_F(ClientChangeTest, ChangesNothingTheSecondTime) {
  for (const auto& client : clients()) {
    for (const auto form : {ToolForm::plain, ToolForm::extended, ToolForm::plain}) {
      change(client, apply, form);
      const auto text = contentOf(fileOf(client));
      const auto written = std::filesystem::last_write_time(fileOf(client));
      EXPECT_EQ(change(client, apply, form), ExitStatus::success);
      EXPECT_EQ(out.str(), std::string(findMcpClient(client)->name) + ": " + fileOf(client).string() +
                               " has \"terminal\" already; nothing was changed.\n");
      EXPECT_EQ(contentOf(fileOf(client)), text);
      EXPECT_EQ(std::filesystem::last_write_time(fileOf(client)), written);
    }
  }
}

TEST_F(ClientChangeTest, KeepsWhatTheUserHasAndGivesItBack) {
  const std::map<std::string, std::string> texts{
      {"claude-desktop", "{\n  \"globalShortcut\": \"\",\n  \"mcpServers\": {\n    \"a\": {}\n  }\n}"},
      {"cursor", "{\"mcpServers\": {\"a\": {\"url\": \"https://x\"}}}\n"},
      {"vscode", "{\n\t// mine\n\t\"servers\": {\n\t\t\"a\": {},\n\t},\n\t\"inputs\": []\n}\n"},
      {"codex", "# mine\nmodel = \"x\"\n\n[mcp_servers.a]\ncommand = \"y\"\n"},
      {"gemini-cli", "{\n    \"theme\": \"x\", // y\n    \"mcpServers\": {}\n}\n"},
      {"zed",
       "// Zed settings\n{\n  \"context_servers\": {\n    \"a\": {}\n  },\n  \"vim_mode\": true,\n}\n"},
      {"opencode", "{\n  \"$schema\": \"s\",\n  \"mcp\": {\n    \"a\": {\"enabled\": false}\n  }\n}\n"},
      {"openclaw", "{\n  // JSON5\n  mcp: {\n    servers: {\n      a: { command: 'x' },\n    },\n  },\n}\n"},
  };
  for (const auto& client : clients()) {
    const auto& text = texts.at(client);
    writeFile(fileOf(client), text);
    EXPECT_EQ(change(client, apply, ToolForm::extended), ExitStatus::success) << err.str();
    EXPECT_NE(contentOf(fileOf(client)), text);
    const auto copy = fileOf(client).string() + ".before-velmora-20010101T000000Z";
    EXPECT_THAT(out.str(), HasSubstr("The file as it was: " + copy + "\n"));
    EXPECT_EQ(contentOf(copy), text);
    EXPECT_EQ(change(client, removal), ExitStatus::success) << err.str();
    EXPECT_THAT(out.str(), HasSubstr("took \"terminal\" out of "));
    EXPECT_EQ(contentOf(fileOf(client)), text) << client;
  }
}

TEST_F(ClientChangeTest, MendsAnOldEntryAndLeavesWhatElseItSays) {
  writeFile(fileOf("cursor"),
            R"({"mcpServers": {"terminal": {"command": "/gone/velmora-headless", "env": {"A": "1"}}}})");
  EXPECT_EQ(change("cursor"), ExitStatus::success);
  EXPECT_THAT(out.str(), HasSubstr("changed \"terminal\" in "));
  EXPECT_EQ(contentOf(fileOf("cursor")),
            R"({"mcpServers": {"terminal": {"command": ")" + program.string() + R"(", "env": {"A": "1"}}}})");
}

TEST_F(ClientChangeTest, NeverTouchesAnEntryThatIsNotOurs) {
  for (const auto action : {apply, removal}) {
    const std::string text = R"({"mcpServers": {"terminal": {"command": "npx", "args": ["some-terminal"]}}})";
    writeFile(fileOf("cursor"), text);
    EXPECT_EQ(change("cursor", action), ExitStatus::failure);
    EXPECT_THAT(err.str(), HasSubstr("has a \"terminal\" that launches npx, which is not Velmora's.\n"));
    EXPECT_EQ(contentOf(fileOf("cursor")), text);
    EXPECT_THAT(testing::namesIn(fileOf("cursor").parent_path()), ElementsAre("mcp.json"));
  }
}

TEST_F(ClientChangeTest, RefusesAFileThatItCannotReadAndSaysWhatToPutThere) {
  for (const auto& client : clients()) {
    writeFile(fileOf(client), "{ \"a\" ");
    EXPECT_EQ(change(client), ExitStatus::failure);
    EXPECT_EQ(err.str(), "velmora: " + fileOf(client).string() +
                             " cannot be read at line 1.\nWhat to put there by hand:\n" +
                             snippetFor(*findMcpClient(client), program.string()) + "\n");
    EXPECT_EQ(change(client, removal), ExitStatus::failure);
    EXPECT_THAT(err.str(), HasSubstr("Take \"terminal\" out of it by hand.\n"));
    EXPECT_EQ(contentOf(fileOf(client)), "{ \"a\" ");
    std::filesystem::remove(fileOf(client));
    std::filesystem::create_symlink(home / "elsewhere", fileOf(client));
    EXPECT_EQ(change(client), ExitStatus::failure);
    EXPECT_THAT(err.str(), HasSubstr("is a link to another place.\n"));
    std::filesystem::remove(fileOf(client));
    writeFile(fileOf(client), "");
    std::filesystem::permissions(fileOf(client), std::filesystem::perms{0400});
    EXPECT_EQ(change(client), ExitStatus::failure);
    EXPECT_THAT(err.str(), HasSubstr("is read-only.\n"));
    EXPECT_THAT(testing::namesIn(fileOf(client).parent_path()), ::testing::SizeIs(1));
  }
}

TEST_F(ClientChangeTest, SaysThatTheDiskIsFull) {
  writeFile(fileOf("zed"), "{}");
  files->failOn("create", std::errc::no_space_on_device);
  EXPECT_EQ(change("zed"), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("cannot be written: No space left on device.\n"));
  EXPECT_EQ(contentOf(fileOf("zed")), "{}");
}

TEST_F(ClientChangeTest, RehearsesWithoutWriting) {
  writeFile(fileOf("gemini-cli"),
            "{\n  \"token\": \"secret\",\n  \"mcpServers\": {\n    \"a\": {}\n  }\n}\n");
  const auto text = contentOf(fileOf("gemini-cli"));
  EXPECT_EQ(change("gemini-cli", {.isRehearsal = true}), ExitStatus::success);
  EXPECT_EQ(out.str(),
            "Gemini CLI: this would change " + fileOf("gemini-cli").string() +
                ":\n-     \"a\": {}\n+     \"a\": {},\n+     \"terminal\": {\n+       \"command\": "
                "\"/opt/velmora/bin/velmora\"\n+     }\nNothing was written.\n");
  EXPECT_EQ(contentOf(fileOf("gemini-cli")), text);
  EXPECT_THAT(testing::namesIn(fileOf("gemini-cli").parent_path()), ElementsAre("settings.json"));
}

TEST_F(ClientChangeTest, ConnectsAnotherMachineBesideThisOne) {
  for (const auto& client : clients()) {
    change(client);
    const auto local = contentOf(fileOf(client));
    EXPECT_EQ(change(client, apply, ToolForm::extended, "ann@build"), ExitStatus::success) << err.str();
    EXPECT_THAT(out.str(), HasSubstr("added \"terminal-build\""));
    EXPECT_THAT(out.str(), HasSubstr("`ssh ann@build velmora --version`"));
    EXPECT_EQ(change(client, removal, ToolForm::plain, "build"), ExitStatus::success) << err.str();
    EXPECT_EQ(contentOf(fileOf(client)), local);
  }
}

TEST_F(ClientChangeTest, FindsNothingToRemove) {
  EXPECT_EQ(change("cursor", removal), ExitStatus::success);
  EXPECT_THAT(out.str(), HasSubstr(" has no \"terminal\"; nothing was changed.\n"));
  EXPECT_FALSE(std::filesystem::exists(fileOf("cursor")));
}

TEST_F(ClientChangeTest, WantsAClientThatHasAFile) {
  EXPECT_EQ(change(""), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("say which client"));
  EXPECT_EQ(change("openclaw-cli"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("use `velmora config --apply openclaw`"));
  EXPECT_EQ(change("crusor"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("did you mean cursor?"));
  auto homeless = surroundings();
  homeless.environment.clear();
  EXPECT_EQ(changeConfig(homeless, "cursor", apply), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("HOME names no folder"));
}

// Claude Code, as far as these tests need it: it keeps its own file.
class ClaudeCodeChange : public ClientChangeTest {
 protected:
  ClaudeCodeChange() {
    runs = [this](const std::vector<std::string>& command) {
      commands.push_back(command);
      writeFile(fileOf("claude-code"), afterwards);
      return ProgramAnswer{.end = ProgramAnswer::End::exited, .exitStatus = status, .errors = "no room\n"};
    };
  }
  std::string afterwards = R"({"n": 2, "mcpServers": {"terminal": {"type": "stdio", "command": ")" +
                           program.string() + R"(", "args": [], "env": {}}}})";
  int status = 0;
};

TEST_F(ClaudeCodeChange, IsLeftToItsOwnCommand) {
  writeFile(fileOf("claude-code"), R"({"n": 1})");
  EXPECT_EQ(change("claude-code"), ExitStatus::success) << err.str();
  EXPECT_THAT(commands, ElementsAre(ElementsAre("claude", "mcp", "add", "--scope", "user", "terminal", "--",
                                                program.string())));
  const auto copy = fileOf("claude-code").string() + ".before-velmora-20010101T000000Z";
  EXPECT_THAT(out.str(), HasSubstr("added \"terminal\" to "));
  EXPECT_THAT(out.str(), HasSubstr("The file as it was: " + copy));
  EXPECT_EQ(contentOf(copy), R"({"n": 1})");
  EXPECT_EQ(change("claude-code"), ExitStatus::success);
  EXPECT_THAT(out.str(), HasSubstr("already; nothing was changed"));
  EXPECT_EQ(commands.size(), 1u);
}

TEST_F(ClaudeCodeChange, KeepsWhatAnOldEntrySaysBesideTheCommand) {
  writeFile(fileOf("claude-code"),
            R"({"mcpServers": {"terminal": {"command": "/old/velmora", "env": {"A": "1"}}}})");
  EXPECT_EQ(change("claude-code"), ExitStatus::success) << err.str();
  EXPECT_THAT(commands,
              ElementsAre(ElementsAre("claude", "mcp", "remove", "--scope", "user", "terminal"),
                          ElementsAre("claude", "mcp", "add-json", "--scope", "user", "terminal",
                                      R"({"command":")" + program.string() + R"(","env":{"A":"1"}})")));
}

TEST_F(ClaudeCodeChange, RemovesByItsCommand) {
  writeFile(fileOf("claude-code"), afterwards);
  afterwards = "{}";
  EXPECT_EQ(change("claude-code", removal), ExitStatus::success) << err.str();
  EXPECT_THAT(commands, ElementsAre(ElementsAre("claude", "mcp", "remove", "--scope", "user", "terminal")));
}

TEST_F(ClaudeCodeChange, SaysTheCommandWhereThereIsNone) {
  writeFile(fileOf("claude-code"), "{}");
  runs = [](const auto&) { return ProgramAnswer{}; };
  EXPECT_EQ(change("claude-code"), ExitStatus::failure);
  EXPECT_EQ(err.str(), "velmora: `claude` is not on PATH, and only it may change " +
                           fileOf("claude-code").string() + ".\nRun this where it is:\n" +
                           snippetFor(*findMcpClient("claude-code"), program.string()) + "\n");
  EXPECT_THAT(testing::namesIn(home.path()), ElementsAre(".claude.json"));
}

TEST_F(ClaudeCodeChange, TellsAFailureAndASuccessThatChangedNothing) {
  afterwards = "{}";
  EXPECT_EQ(change("claude-code"), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("`claude` did not change "));
  status = 1;
  EXPECT_EQ(change("claude-code"), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("failed: no room"));
  EXPECT_THAT(err.str(), HasSubstr("The file as it was: "));
}

TEST_F(ClaudeCodeChange, RehearsesItsCommands) {
  EXPECT_EQ(change("claude-code", {.isRehearsal = true}), ExitStatus::success);
  EXPECT_EQ(out.str(), "Claude Code: this would run:\nclaude mcp add --scope user terminal -- \"" +
                           program.string() + "\"\nNothing was run.\n");
  EXPECT_THAT(commands, IsEmpty());
}

}  // namespace
}  // namespace velmora
