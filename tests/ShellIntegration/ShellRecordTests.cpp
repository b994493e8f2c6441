#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ShellIntegration/ShellRecord.h"
#include "ShellIntegration/ShellScripts.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

constexpr auto good = "1 42 900 7 3 130 1700000000000001 1700000000000002      \n";

TEST(ShellRecord, IsOneLineOfNumbers) {
  const ShellRecord expected{.process = 42,
                             .startTicks = 900,
                             .instance = 7,
                             .number = 3,
                             .status = 130,
                             .began = 1700000000000001,
                             .ended = 1700000000000002};
  EXPECT_EQ(parseShellRecord(good), expected);
  const auto unknown = parseShellRecord("1 42 0 7 3 - 0 0\n");
  ASSERT_TRUE(unknown);
  EXPECT_EQ(unknown->status, std::nullopt);
}

TEST(ShellRecord, NothingElseIsOne) {
  for (const std::string_view text : {"",
                                      "\n",
                                      "1",
                                      "1 42 900 7 3 130 1 2",
                                      "2 42 900 7 3 130 1 2\n",
                                      "1 0 900 7 3 130 1 2\n",
                                      "1 -42 900 7 3 130 1 2\n",
                                      "1 42 900 7 3 256 1 2\n",
                                      "1 42 900 7 3 -1 1 2\n",
                                      "1 42 900 7 3  1 2\n",
                                      "1  42 900 7 3 1 1 2\n",
                                      " 1 42 900 7 3 1 1 2\n",
                                      "1 42 900 7 3 1 1 2 9\n",
                                      "1 42 900 7 3 1 1 2x\n",
                                      "1 42 900 7 3 1 1 2\n\n",
                                      "1 42 900 7 3 1 1 2\n1 42 900 7 4 0 1 2\n",
                                      "1\t42 900 7 3 1 1 2\n",
                                      "1 42 900 7 99999999999999999999 1 1 2\n",
                                      "1 99999999999 900 7 3 1 1 2\n",
                                      "1 0x2a 9 7 3 1 1 2\n",
                                      "1 +42 900 7 3 1 1 2\n"}) {
    EXPECT_EQ(parseShellRecord(text), std::nullopt) << text;
  }
  EXPECT_EQ(parseShellRecord(std::string_view("1 42 900 7 3 1 1 2\0\n", 20)), std::nullopt);
}

class ShellRecordFile : public ::testing::Test {
 protected:
  ShellRecordFile() {
    std::filesystem::create_directories(folder);
    ::chmod(folder.c_str(), 0700);
    testing::writeFile(file, good);
    ::chmod(file.c_str(), 0600);
  }
  std::optional<ShellRecord> read(std::string_view tty = "/dev/pts/3") const {
    return readShellRecord(directory.path(), tty);
  }

  TemporaryDirectory directory;
  std::filesystem::path folder = directory / shellRecordFolder;
  std::filesystem::path file = folder / "pts-3";
};

TEST_F(ShellRecordFile, IsThatOfTheTerminal) {
  EXPECT_TRUE(read());
  for (const std::string_view tty :
       {"/dev/pts/4", "/dev/", "", "pts/3", "/dev/../x", "/dev/.", "/dev/pts/3/"})
    EXPECT_FALSE(read(tty)) << tty;
}

TEST_F(ShellRecordFile, IsNotReadWhenOthersMayWriteIt) {
  ::chmod(file.c_str(), 0620);
  EXPECT_FALSE(read());
  ::chmod(file.c_str(), 0602);
  EXPECT_FALSE(read());
  ::chmod(file.c_str(), 0600);
  ::chmod(folder.c_str(), 0777);
  EXPECT_FALSE(read());
  ::chmod(folder.c_str(), 0700);
  EXPECT_TRUE(read());
}

TEST_F(ShellRecordFile, IsARegularFileOfModestSizeAndNoLink) {
  testing::writeFile(file, std::string(257, ' '));
  EXPECT_FALSE(read());
  std::filesystem::remove(file);
  EXPECT_FALSE(read()) << "there is none";
  testing::writeFile(folder / "other", good);
  std::filesystem::create_symlink(folder / "other", file);
  EXPECT_FALSE(read());
  std::filesystem::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  EXPECT_FALSE(read()) << "and nobody waits for a writer";
  std::filesystem::remove(file);
  std::filesystem::create_directory(file);
  EXPECT_FALSE(read());
}

TEST_F(ShellRecordFile, ItsFolderIsNoLink) {
  std::filesystem::rename(folder, directory / "elsewhere");
  std::filesystem::create_directory_symlink(directory / "elsewhere", folder);
  EXPECT_FALSE(read());
}

TEST(ShellScripts, AreThoseOfThreeShells) {
  for (const char* const shell : {"bash", "zsh", "fish"}) {
    const ShellScript* const script = findShellScript(shell);
    ASSERT_NE(script, nullptr) << shell;
    EXPECT_TRUE(script->snippet.starts_with("# ")) << shell;
    EXPECT_TRUE(script->snippet.ends_with("\n")) << shell;
    EXPECT_EQ(script->start.empty(), script->shell == "fish");
  }
  EXPECT_EQ(findShellScript("dash"), nullptr);
  EXPECT_EQ(findShellScript(""), nullptr);
}

}  // namespace
}  // namespace velmora
