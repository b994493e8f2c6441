#include <gtest/gtest.h>

#include "VelmoraHelper/Commands/ProgramPath.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

class ProgramPath : public ::testing::Test {
 protected:
  ProgramPath() {
    for (const auto& file : {real, other}) {
      testing::writeFile(file, "");
      std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    std::filesystem::create_directory(directory / "bin");
    std::filesystem::create_symlink(real, link);
  }

  TemporaryDirectory directory;
  std::filesystem::path real = directory / "Cellar/1.0/velmora";
  std::filesystem::path other = directory / "other/velmora";
  std::filesystem::path link = directory / "bin/velmora";
};

TEST_F(ProgramPath, IsTheOneThatThePersonTyped) {
  EXPECT_EQ(programPath(real.string(), {}, real), real);
  EXPECT_EQ(programPath((directory / "bin/../other/.././bin/velmora").string(), {}, real), link);
}

TEST_F(ProgramPath, KeepsALinkWhichSurvivesAnUpdate) {
  EXPECT_EQ(programPath(link.string(), {}, real), link);
}

TEST_F(ProgramPath, IsLookedForInTheFoldersOfPath) {
  EXPECT_EQ(programPath("velmora", {{"PATH", "/nonexistent:" + link.parent_path().string()}}, real), link);
}

TEST_F(ProgramPath, IsNeverThatOfAnotherProgram) {
  EXPECT_EQ(programPath(other.string(), {}, real), real);
  EXPECT_EQ(programPath("velmora", {{"PATH", other.parent_path().string()}}, real), real);
  EXPECT_EQ(programPath("no-such-program", {}, real), real);
  EXPECT_EQ(programPath("", {}, real), real);
}

}  // namespace
}  // namespace velmora
