#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <system_error>

#include "System/FileSystem.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using testing::modeOf;
using testing::namesIn;
using testing::writeFile;

class PosixFileSystemTest : public ::testing::Test {
 protected:
  template <class Work>
  static std::error_code codeOf(Work work) {
    try {
      work();
    } catch (const std::system_error& error) {
      return error.code();
    }
    return {};
  }

  TemporaryDirectory directory;
  PosixFileSystem files;
};

TEST_F(PosixFileSystemTest, SeesWhatIsThereAndWhatIsNot) {
  writeFile(directory / "file", "x");
  EXPECT_TRUE(files.exists(directory / "file"));
  EXPECT_TRUE(files.exists(directory.path()));
  EXPECT_FALSE(files.exists(directory / "none"));
  EXPECT_FALSE(files.exists(directory / "none" / "deeper"));
  EXPECT_FALSE(files.exists(directory / "file" / "below a file"));
  std::filesystem::create_directories(directory / "folder");
  std::filesystem::create_symlink(directory / "folder", directory / "link");
  EXPECT_TRUE(files.exists(directory / "link"));
  EXPECT_FALSE(files.exists(directory / "link" / "none"));
  EXPECT_FALSE(files.exists("none"));
}

TEST_F(PosixFileSystemTest, CountsWhatIsBehindALinkThatLeadsNowhereAsThere) {
  std::filesystem::create_symlink(directory / "unmounted", directory / "link");
  for (const auto& path : {directory / "link", directory / "link/file", directory / "link/folder/file"}) {
    EXPECT_TRUE(files.exists(path)) << path;
    EXPECT_EQ(codeOf([&] { files.read(path); }), std::errc::no_such_file_or_directory) << path;
  }
}

TEST_F(PosixFileSystemTest, CountsAFileThatCannotBeLookedAtAsThere) {
  std::filesystem::create_symlink(directory / "loop", directory / "loop");
  EXPECT_TRUE(files.exists(directory / "loop"));
}

TEST_F(PosixFileSystemTest, ReadsWholeFilesOfAnySize) {
  for (const std::size_t size : {0u, 1u, 4096u, 1'000'003u}) {
    std::string content(size, 'a');
    if (size > 0) content.back() = '\0';
    writeFile(directory / "file", content);
    EXPECT_TRUE(files.read(directory / "file") == content) << size;
  }
}

TEST_F(PosixFileSystemTest, RefusesAtOnceWhatIsNoRegularFile) {
  const auto fifo = directory / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(codeOf([&] { files.read(fifo); }), std::errc::not_supported) << "nobody writes into it";
  EXPECT_EQ(codeOf([&] { files.read("/dev/zero"); }), std::errc::not_supported) << "it has no end";
  std::filesystem::create_symlink("/dev/zero", directory / "link");
  EXPECT_EQ(codeOf([&] { files.read(directory / "link"); }), std::errc::not_supported);
}

TEST_F(PosixFileSystemTest, RefusesAFileThatIsFarTooLarge) {
  writeFile(directory / "file", "x");
  std::filesystem::resize_file(directory / "file", mostBytesRead + 1);  // a hole; it takes no room
  EXPECT_EQ(codeOf([&] { files.read(directory / "file"); }), std::errc::file_too_large);
}

TEST_F(PosixFileSystemTest, ReportsWhatCannotBeRead) {
  EXPECT_EQ(codeOf([&] { files.read(directory / "none"); }), std::errc::no_such_file_or_directory);
  EXPECT_EQ(codeOf([&] { files.read(directory.path()); }), std::errc::is_a_directory);
}

TEST_F(PosixFileSystemTest, CreatesFilesForTheUserAloneWhateverTheMask) {
  const auto mask = ::umask(0);
  files.create(directory / "file", "content");
  ::umask(mask);
  EXPECT_EQ(contentOf(directory / "file"), "content");
  EXPECT_EQ(modeOf(directory / "file"), 0600u);
}

TEST_F(PosixFileSystemTest, CreatesNothingWhereSomethingStands) {
  writeFile(directory / "file", "old");
  std::filesystem::create_symlink(directory / "target", directory / "link");
  EXPECT_EQ(codeOf([&] { files.create(directory / "file", "new"); }), std::errc::file_exists);
  EXPECT_EQ(codeOf([&] { files.create(directory / "link", "new"); }), std::errc::file_exists);
  EXPECT_EQ(contentOf(directory / "file"), "old");
  EXPECT_FALSE(std::filesystem::exists(directory / "target"));
}

TEST_F(PosixFileSystemTest, ReportsAWriteThatDidNotFit) {
  struct rlimit before {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = ::signal(SIGXFSZ, SIG_IGN);
  const struct rlimit small { .rlim_cur = 1000, .rlim_max = before.rlim_max };
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
  const auto code = codeOf([&] { files.create(directory / "file", std::string(5000, 'x')); });
  ::setrlimit(RLIMIT_FSIZE, &before);
  ::signal(SIGXFSZ, handler);
  EXPECT_EQ(code, std::errc::file_too_large);
}

TEST_F(PosixFileSystemTest, RenamesOverAnotherFile) {
  writeFile(directory / "new", "new");
  writeFile(directory / "old", "old");
  files.rename(directory / "new", directory / "old");
  EXPECT_EQ(contentOf(directory / "old"), "new");
  EXPECT_THAT(namesIn(directory.path()), ::testing::ElementsAre("old"));
  EXPECT_EQ(codeOf([&] { files.rename(directory / "new", directory / "old"); }),
            std::errc::no_such_file_or_directory);
}

TEST_F(PosixFileSystemTest, RemovesAFileOnceAndForAll) {
  writeFile(directory / "file", "x");
  files.remove(directory / "file");
  files.remove(directory / "file");
  EXPECT_THAT(namesIn(directory.path()), ::testing::IsEmpty());
  EXPECT_NE(codeOf([&] { files.remove(directory.path()); }), std::error_code());
}

TEST_F(PosixFileSystemTest, CreatesMissingDirectoriesAndFlushesThem) {
  files.createDirectories(directory / "a" / "b");
  files.createDirectories(directory / "a" / "b");
  files.flushDirectory(directory / "a" / "b");
  EXPECT_TRUE(std::filesystem::is_directory(directory / "a" / "b"));
  EXPECT_EQ(codeOf([&] { files.flushDirectory(directory / "none"); }), std::errc::no_such_file_or_directory);
}

TEST_F(PosixFileSystemTest, ReportsAModeThatCannotBeSet) {
  EXPECT_EQ(codeOf([&] { files.setMode(directory / "none", 0600); }), std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace velmora
