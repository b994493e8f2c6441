#include <gmock/gmock.h>
#include <unistd.h>

#include <stdexcept>

#include "TerminalAutomation/Tmux/Picture/PictureModule.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

const PaneScreen screen{.text = "\033[31mred\033[0m text\n│한글│\n", .columns = 20, .rows = 4};

TEST(PictureModule, DrawsWhatTheProgramItselfWould) {
  EXPECT_EQ(drawWithModule(pictureModuleFile(), screen), renderPanePicture(screen));
  EXPECT_EQ(drawWithModule(pictureModuleFile(), screen), renderPanePicture(screen)) << "loaded already";
}

TEST(PictureModule, SaysWhichFileCannotBeLoaded) {
  const auto file = pictureModuleFile().parent_path() / "picture-0.0.0.so";
  EXPECT_THAT([&] { drawWithModule(file, screen); },
              ThrowsMessage<std::runtime_error>(HasSubstr(file.string())));
}

TEST(PictureModule, IsNoLibraryOfAnotherKind) {
  EXPECT_THAT([] { drawWithModule("/proc/self/exe", screen); },
              ThrowsMessage<std::runtime_error>(HasSubstr("restart Velmora")));
}

TEST(PictureModule, IsLoadedOnlyFromWhereNobodyElseMayWrite) {
  namespace fs = std::filesystem;
  const TemporaryDirectory directory;
  const auto folder = directory / "lib";
  const auto file = folder / "picture.so";
  const auto link = directory / "link.so";
  fs::create_directory(folder);
  fs::copy_file(pictureModuleFile(), file);
  fs::create_symlink(file, link);
  const auto refusal = [&](const fs::path& module) -> std::string {
    try {
      return drawWithModule(module, screen) == renderPanePicture(screen) ? "" : "another picture";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  };
  for (const auto& place : {file, folder}) {
    for (const auto wide : {fs::perms::group_write, fs::perms::others_write}) {
      fs::permissions(place, wide, fs::perm_options::add);
      EXPECT_THAT(refusal(file), HasSubstr("others may write to " + place.string()));
      EXPECT_THAT(refusal(link), HasSubstr("others may write to " + place.string()));
      fs::permissions(place, wide, fs::perm_options::remove);
    }
    if (::geteuid() != 0) continue;  // only root gives files away
    EXPECT_EQ(::chown(place.c_str(), 65534, 65534), 0);
    EXPECT_THAT(refusal(file), HasSubstr(place.string() + " belongs to another user"));
    EXPECT_EQ(::chown(place.c_str(), 0, 0), 0);
  }
  EXPECT_EQ(refusal(link), "");
}

TEST(PictureModule, IsNotLookedForInTheFoldersOfTheEnvironment) {
  EXPECT_THROW(drawWithModule("libc.so.6", screen), std::runtime_error);
  EXPECT_THROW(drawWithModule("lib/velmora/picture.so", screen), std::runtime_error);
  EXPECT_THROW(drawWithModule("", screen), std::runtime_error);
}

}  // namespace
}  // namespace velmora
