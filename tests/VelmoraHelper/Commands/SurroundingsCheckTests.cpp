#include "VelmoraHelper/Commands/SurroundingsCheck.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class SurroundingsCheckTest : public testing::CommandFixture {
 protected:
  CommandContext surroundings() {
    auto made = context();
    made.environment = environment;
    made.roomAt = [this](const std::filesystem::path& folder) {
      EXPECT_EQ(folder, settings.parent_path());
      return room;
    };
    return made;
  }
  Check only() {
    const auto checks = checkSurroundings(surroundings());
    EXPECT_THAT(checks, SizeIs(1));
    return checks.empty() ? Check{} : checks.front();
  }
  Check ofClient(const std::string& entry) {
    testing::writeFile(home / ".cursor/mcp.json", entry);
    const auto checks = checkClients(surroundings());
    EXPECT_THAT(checks, SizeIs(1));
    return checks.empty() ? Check{} : checks.front();
  }

  TemporaryDirectory home;
  Environment environment{{"HOME", home.path().string()}, {"PATH", "/usr/bin:/bin"}};
  std::optional<std::uintmax_t> room = std::uintmax_t{5} << 30;
};

TEST_F(SurroundingsCheckTest, SaysNothingWhereAllIsAsUsual) {
  environment["XDG_RUNTIME_DIR"] = home.path().string();
  environment["LANG"] = "ko_KR.utf8";
  EXPECT_THAT(checkSurroundings(surroundings()), IsEmpty());
  room.reset();
  EXPECT_THAT(checkSurroundings(surroundings()), IsEmpty());
}

TEST_F(SurroundingsCheckTest, FindsAFullDisk) {
  room = 12'288;
  EXPECT_FALSE(only().ok);
  EXPECT_EQ(only().finding, "the disk of /nonexistent/Velmora is full: 12 KB are left");
  EXPECT_THAT(only().nextStep, HasSubstr("commands are delivered, but neither their records nor settings"));
}

TEST_F(SurroundingsCheckTest, SaysWhyARuntimeFolderIsPassedOver) {
  environment["XDG_RUNTIME_DIR"] = "/run/user/none-such";
  EXPECT_TRUE(only().ok);
  EXPECT_EQ(only().finding, "XDG_RUNTIME_DIR is passed over: /run/user/none-such is not there");
  environment["XDG_RUNTIME_DIR"] = "run";
  EXPECT_EQ(only().finding, "XDG_RUNTIME_DIR is passed over: run is no absolute path");
  testing::writeFile(home / "file", "");
  environment["XDG_RUNTIME_DIR"] = (home / "file").string();
  EXPECT_EQ(only().finding,
            "XDG_RUNTIME_DIR is passed over: " + (home / "file").string() + " is no folder of yours");
}

TEST_F(SurroundingsCheckTest, FindsRootThatIsReallySomebodyElse) {
  EXPECT_THAT(checkUser(0, {{"SUDO_UID", "1000"}})->finding,
              HasSubstr("you are root by sudo; your Velmora runs as user 1000"));
  EXPECT_EQ(checkUser(0, {{"SUDO_UID", "1000"}})->nextStep, "Run it without sudo.");
  EXPECT_FALSE(checkUser(0, {{"SUDO_UID", "0"}}));
  EXPECT_FALSE(checkUser(0, {}));
  EXPECT_FALSE(checkUser(1000, {{"SUDO_UID", "1000"}}));
}

TEST_F(SurroundingsCheckTest, TellsOfALocaleWithoutUtf8) {
  environment["LANG"] = "C.UTF-8";
  environment["LC_ALL"] = "POSIX";
  EXPECT_TRUE(only().ok);
  EXPECT_THAT(only().finding, HasSubstr("LC_ALL=POSIX is not UTF-8"));
  environment["LC_ALL"] = "";
  EXPECT_THAT(checkSurroundings(surroundings()), IsEmpty());
}

TEST_F(SurroundingsCheckTest, PassesAClientWhoseProgramIsThere) {
  const auto check = ofClient(R"({"mcpServers": {"terminal": {"command": "/bin/sh"}}})");
  EXPECT_TRUE(check.ok);
  EXPECT_EQ(check.name, "client cursor");
  EXPECT_EQ(check.finding, (home / ".cursor/mcp.json").string() + " launches /bin/sh");
}

TEST_F(SurroundingsCheckTest, FindsAClientWhoseProgramIsGoneOrTheWrongOne) {
  auto check = ofClient(R"({"mcpServers": {"terminal": {"command": "/gone/velmora"}}})");
  EXPECT_FALSE(check.ok);
  EXPECT_THAT(check.finding, HasSubstr("launches /gone/velmora, which is not there"));
  EXPECT_EQ(check.nextStep, "Run: velmora config --apply cursor");

  testing::writeFile(home / "velmora-headless", "");
  std::filesystem::permissions(home / "velmora-headless", std::filesystem::perms::owner_all);
  check = ofClient(R"({"mcpServers": {"terminal": {"command": ")" + (home / "velmora-headless").string() +
                   R"("}}})");
  EXPECT_THAT(check.finding, HasSubstr("which is the bridge and not the helper"));
  EXPECT_EQ(check.nextStep, "Run: velmora config --apply cursor");

  check = ofClient(R"({"mcpServers": {"terminal": {"url": "x"}}})");
  EXPECT_THAT(check.finding, HasSubstr("names no program"));
  EXPECT_THAT(check.nextStep, HasSubstr("`velmora config cursor` prints it."));
}

TEST_F(SurroundingsCheckTest, FindsAClientsFileThatCannotBeRead) {
  const auto check = ofClient("{ \"mcpServers\"");
  EXPECT_FALSE(check.ok);
  EXPECT_THAT(check.finding, HasSubstr("cannot be read at line 1"));
}

TEST_F(SurroundingsCheckTest, PassesOverClientsWithoutAnEntry) {
  testing::writeFile(home / ".cursor/mcp.json", "{\"mcpServers\": {}}");
  EXPECT_THAT(checkClients(surroundings()), IsEmpty());
}

TEST_F(SurroundingsCheckTest, NamesTheProcessAndFindsAProgramThatWasReplaced) {
  auto made = surroundings();
  EXPECT_THAT(checkProcess(made), IsEmpty());
  made.bridgeProcess = [] { return 7; };
  made.processNamed = [](pid_t) { return RunningProcess{.name = "velmora-app"}; };
  EXPECT_TRUE(checkProcess(made).front().ok);
  EXPECT_EQ(checkProcess(made).front().finding, "velmora-app, process 7");
  made.processNamed = [](pid_t) { return RunningProcess{.name = "velmora-app", .isReplaced = true}; };
  EXPECT_FALSE(checkProcess(made).front().ok);
  EXPECT_EQ(checkProcess(made).front().finding,
            "velmora-app, process 7, runs a program that was replaced or removed since it started");
}

}  // namespace
}  // namespace velmora
