#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>

#include "LocalControl/UnixSocketServer.h"
#include "VelmoraHelper/Commands/SocketCheck.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using std::filesystem::perms;
using ::testing::HasSubstr;

class SocketCheck : public ::testing::Test {
 protected:
  Check check() const { return checkSocket(socket, ::geteuid()); }

  TemporaryDirectory directory;
  std::filesystem::path folder = directory / "app.velmora.Velmora";
  std::filesystem::path socket = folder / "control-v1.sock";
};

TEST_F(SocketCheck, PassesTheSocketThatTheApplicationMakes) {
  const UnixSocketServer server(socket);
  EXPECT_TRUE(check().ok) << check().finding;
  EXPECT_EQ(check().finding, socket.string() + ", yours alone");
}

TEST_F(SocketCheck, PassesASocketThatIsNotThereYetAndMakesNothing) {
  EXPECT_EQ(check().finding, socket.string() + ", not there yet");
  EXPECT_TRUE(check().ok);
  EXPECT_FALSE(std::filesystem::exists(folder));
  std::filesystem::create_directory(folder);
  std::filesystem::permissions(folder, perms::owner_all);
  EXPECT_TRUE(check().ok) << check().finding;
}

TEST_F(SocketCheck, FindsAFolderThatOthersMayEnter) {
  const UnixSocketServer server(socket);
  std::filesystem::permissions(folder, perms::owner_all | perms::others_exec);
  EXPECT_FALSE(check().ok);
  EXPECT_EQ(check().nextStep, "Run: chmod 700 '" + folder.string() + "'");
}

TEST_F(SocketCheck, FindsASocketThatOthersMayWriteTo) {
  const UnixSocketServer server(socket);
  std::filesystem::permissions(socket, perms::owner_all | perms::group_write);
  EXPECT_FALSE(check().ok);
  EXPECT_EQ(check().nextStep, "Run: chmod 600 '" + socket.string() + "'");
}

TEST_F(SocketCheck, FindsAFolderOrASocketOfAnotherUser) {
  const UnixSocketServer server(socket);
  const auto found = checkSocket(socket, ::geteuid() + 1);
  EXPECT_FALSE(found.ok);
  EXPECT_THAT(found.finding, HasSubstr("belongs to another user"));
}

TEST_F(SocketCheck, FindsSomethingElseInTheSocketsPlace) {
  testing::writeFile(socket, "");
  std::filesystem::permissions(folder, perms::owner_all);
  EXPECT_FALSE(check().ok);
  EXPECT_THAT(check().finding, HasSubstr(socket.string()));
}

TEST_F(SocketCheck, FindsALinkInThePlaceOfTheFolder) {
  const auto elsewhere = directory / "elsewhere";
  const UnixSocketServer server(elsewhere / "control-v1.sock");
  std::filesystem::create_directory_symlink(elsewhere, folder);
  EXPECT_FALSE(check().ok);
  EXPECT_THAT(check().finding, HasSubstr(folder.string()));
}

TEST_F(SocketCheck, TellsAFolderThatIsClosedFromOneThatCannotBeUsed) {
  EXPECT_EQ(unseenSocket("/run/user/7/x", EACCES).nextStep,
            "Give yourself access to it: chmod u+rwx '/run/user/7'");
  EXPECT_THAT(unseenSocket("/run/user/7/x", ELOOP).nextStep, HasSubstr("a short path"));
}

TEST_F(SocketCheck, FindsAPathThatFitsNoSocket) {
  const auto found = checkSocket("/" + std::string(103, 'x'), ::geteuid());
  EXPECT_FALSE(found.ok);
  EXPECT_THAT(found.finding, HasSubstr("longer than 103 bytes"));
  EXPECT_TRUE(checkSocket("/" + std::string(102, 'x'), ::geteuid()).finding.find("longer") ==
              std::string::npos);
}

}  // namespace
}  // namespace velmora
