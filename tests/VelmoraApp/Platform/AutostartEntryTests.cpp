#include <gmock/gmock.h>

#include <QtCore/QProcess>
#include <stdexcept>

#include "VelmoraApp/Platform/AutostartEntry.h"
#include "tests/support/Files.h"
#include "tests/support/HookedFileSystem.h"
#include "tests/support/TemporaryDirectory.h"

namespace velmora {
namespace {

using testing::contentOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Optional;
using testing::writeFile;

constexpr const char* name = "app.velmora.Velmora.desktop";

// GLib reads it once, and more important desktops stand first.
[[maybe_unused]] const bool desktopIsNamed = qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");

class AutostartEntryTest : public ::testing::Test {
 protected:
  AutostartEntryTest() { makeProgram(program); }

  static void makeProgram(const std::filesystem::path& path) {
    writeFile(path, "#!/bin/sh\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }

  AutostartEntry entry() { return entryOf(program); }
  AutostartEntry entryOf(const std::filesystem::path& path) { return {files, environment, path}; }

  // Keys of the user's entry besides those that every entry has.
  void writeOwn(const std::string& keys) { writeFile(ownFile, wholeEntry(keys)); }
  std::string wholeEntry(const std::string& keys) const {
    return "[Desktop Entry]\nType=Application\nName=Velmora\nExec=" + program.string() + "\n" + keys;
  }

  const TemporaryDirectory home;
  const std::filesystem::path program = home / "bin/velmora-app";
  const std::filesystem::path ownFile = home / "config/autostart" / name;
  Environment environment{{"HOME", home.path().string()}, {"XDG_CONFIG_HOME", (home / "config").string()}};
  testing::HookedFileSystem files;
};

TEST_F(AutostartEntryTest, IsDisabledWithoutAnyFile) { EXPECT_FALSE(entry().isEnabled()); }

TEST_F(AutostartEntryTest, EnablingWritesOneCompleteFile) {
  entry().setEnabled(true);
  EXPECT_TRUE(entry().isEnabled());
  EXPECT_EQ(contentOf(ownFile),
            "[Desktop Entry]\nType=Application\nName=Velmora\n"
            "Comment=Let AI coding agents use your terminal, within limits that you set\n"
            "Icon=app.velmora.Velmora\nTerminal=false\nX-GNOME-Autostart-enabled=true\nExec=" +
                program.string() + "\nTryExec=" + program.string() + "\n");
  EXPECT_THAT(testing::namesIn(ownFile.parent_path()), ElementsAre(name));
}

TEST_F(AutostartEntryTest, DisablingLeavesNothing) {
  entry().setEnabled(true);
  entry().setEnabled(false);
  EXPECT_FALSE(entry().isEnabled());
  EXPECT_THAT(testing::namesIn(ownFile.parent_path()), ElementsAre());
}

TEST_F(AutostartEntryTest, LiesUnderTheHomeWithoutAConfigurationFolder) {
  for (const auto* folder : {"", "relative/folder"}) {
    environment["XDG_CONFIG_HOME"] = folder;
    entry().setEnabled(true);
    EXPECT_TRUE(std::filesystem::exists(home / ".config/autostart" / name));
    entry().setEnabled(false);
    EXPECT_FALSE(std::filesystem::exists(home / ".config/autostart" / name));
  }
}

TEST_F(AutostartEntryTest, IsRefusedWithoutAnyHome) {
  environment = {};
  EXPECT_FALSE(entry().isEnabled());
  EXPECT_THROW(entry().setEnabled(true), std::runtime_error);
  EXPECT_NO_THROW(entry().followProgram());
}

TEST_F(AutostartEntryTest, RespectsWhatAUserOrADesktopWrote) {
  const std::pair<const char*, bool> cases[] = {
      {"", true},
      {"Hidden=true\n", false},
      {"Hidden=false\n", true},
      {"X-GNOME-Autostart-enabled=false\n", false},
      {"X-GNOME-Autostart-enabled=true\n", true},
      {"OnlyShowIn=KDE;XFCE;\n", false},
      {"OnlyShowIn=GNOME;KDE;\n", true},
      {"NotShowIn=GNOME;\n", false},
      {"NotShowIn=KDE;\n", true},
      {"NotShowIn=GNOME;\nOnlyShowIn=ubuntu;\n", true},
      {"NotShowIn=ubuntu;\nOnlyShowIn=GNOME;\n", false},
      {"TryExec=sh\n", true},
      {"TryExec=velmora-missing\n", false},
      {"TryExec=/nowhere/velmora-app\n", false},
      {"TryExec=/usr\n", false},
      {"Type=Link\n", false},
      {"Exec=\n", false},
  };
  for (const auto& [keys, enabled] : cases) {
    writeOwn(keys);
    EXPECT_EQ(entry().isEnabled(), enabled) << keys;
  }
  writeFile(ownFile, "not a desktop file");
  EXPECT_FALSE(entry().isEnabled());
}

TEST_F(AutostartEntryTest, EnablingUndoesEveryKindOfOffAndKeepsOtherKeys) {
  for (const std::string off :
       {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n", "OnlyShowIn=KDE;\n", "NotShowIn=GNOME;KDE;\n",
        "OnlyShowIn=KDE;\nNotShowIn=ubuntu;\n", "TryExec=/nowhere/velmora-app\n", "Type=Link\n"}) {
    writeOwn(off + "X-GNOME-Autostart-Delay=5\nName[ko]=벨모라\n# mine\n");
    ASSERT_FALSE(entry().isEnabled()) << off;
    entry().setEnabled(true);
    EXPECT_TRUE(entry().isEnabled()) << contentOf(ownFile);
    // Whether a new key comes before a comment at the end is GLib's choice.
    EXPECT_THAT(contentOf(ownFile), HasSubstr("X-GNOME-Autostart-Delay=5\nName[ko]=벨모라\n"));
    EXPECT_THAT(contentOf(ownFile), HasSubstr("\n# mine\n"));
  }
}

TEST_F(AutostartEntryTest, EnablingKeepsALineThatDoesMoreThanStartTheProgram) {
  const std::string own = "[Desktop Entry]\nType=Application\nName=Velmora\nExec=nice -n 5 velmora-app\n";
  writeFile(ownFile, own + "TryExec=/nowhere\nHidden=true\n");
  entry().setEnabled(true);
  EXPECT_EQ(contentOf(ownFile), own + "X-GNOME-Autostart-enabled=true\n");
}

TEST_F(AutostartEntryTest, EnablingReplacesAFileThatIsNoEntry) {
  writeFile(ownFile, "rubbish");
  entry().setEnabled(true);
  EXPECT_TRUE(entry().isEnabled());
}

TEST_F(AutostartEntryTest, FollowsAProgramThatMoved) {
  entry().setEnabled(true);
  auto edited = contentOf(ownFile) + "X-GNOME-Autostart-Delay=5\n";
  writeFile(ownFile, edited);
  const auto moved = home / "new place/velmora-app";
  makeProgram(moved);
  std::filesystem::remove(program);
  EXPECT_FALSE(entryOf(moved).isEnabled());  // a desktop would find no program
  entryOf(moved).followProgram();
  EXPECT_TRUE(entryOf(moved).isEnabled());
  EXPECT_THAT(contentOf(ownFile), HasSubstr("\nExec=\"" + moved.string() + "\"\n"));
  EXPECT_THAT(contentOf(ownFile),
              HasSubstr("\nTryExec=" + home.path().string() + "/new place/velmora-app\n"));
  EXPECT_THAT(contentOf(ownFile), HasSubstr("X-GNOME-Autostart-Delay=5\n"));
}

TEST_F(AutostartEntryTest, FollowingLeavesAloneWhatIsTheUsersOwn) {
  const auto moved = home / "elsewhere/velmora-app";
  const std::string start = "[Desktop Entry]\nType=Application\nName=Velmora\n";
  for (const auto& rest : {std::string("Exec=/old/my-wrapper\n"), std::string("Exec=velmora-app\n"),
                           std::string("Exec=nice /old/velmora-app\n"), "Exec=" + moved.string() + "\n"}) {
    writeFile(ownFile, start + rest);
    entryOf(moved).followProgram();
    EXPECT_EQ(contentOf(ownFile), start + rest);
  }
  std::filesystem::remove(ownFile);
  entryOf(moved).followProgram();
  EXPECT_FALSE(std::filesystem::exists(ownFile));
}

TEST_F(AutostartEntryTest, FollowingSwitchesNothingOn) {
  for (const std::string off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
    writeFile(ownFile, "[Desktop Entry]\nType=Application\nName=Velmora\nExec=/old/velmora-app\n" + off);
    entry().followProgram();
    EXPECT_FALSE(entry().isEnabled());
    EXPECT_THAT(contentOf(ownFile), HasSubstr("Exec=" + program.string()));
  }
}

TEST_F(AutostartEntryTest, AFailureLeavesWhatWasThere) {
  writeOwn("Hidden=true\n");
  const auto before = contentOf(ownFile);
  for (int step = 0;; ++step) {
    files.failAt(step, /*andAllAfter=*/false);
    bool threw = false;
    try {
      entry().setEnabled(true);
    } catch (const std::system_error&) {
      threw = true;
    }
    if (!files.failed()) break;
    files.work();
    if (threw) {
      EXPECT_TRUE(contentOf(ownFile) == before || entry().isEnabled()) << contentOf(ownFile);
      EXPECT_THAT(testing::namesIn(ownFile.parent_path()), ElementsAre(name));
    }
    writeFile(ownFile, before);
  }
}

TEST_F(AutostartEntryTest, IsValidForTheDesktopsOwnCheckWhateverThePathIs) {
  for (const auto* folder : {"plain", "a b", "it's", "q\"q", "back\\slash", "dollar$HOME", "tick`s`",
                             "벨모라", "(a)&b;c|d<e>f#g*h?i~j"}) {
    const auto path = home / folder / "velmora-app";
    makeProgram(path);
    entryOf(path).setEnabled(true);
    QProcess validator;
    validator.setProcessChannelMode(QProcess::MergedChannels);
    validator.start("desktop-file-validate", {QString::fromStdString(ownFile.string())});
    ASSERT_TRUE(validator.waitForFinished()) << validator.errorString().toStdString();
    EXPECT_EQ(validator.readAll().toStdString(), "") << contentOf(ownFile);
    EXPECT_EQ(validator.exitCode(), 0);
    EXPECT_TRUE(entryOf(path).isEnabled()) << contentOf(ownFile);
    entryOf(path).setEnabled(false);
  }
}

TEST(ExecLine, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(execLine("/usr/bin/velmora-app"), "/usr/bin/velmora-app");
  EXPECT_EQ(execLine("/opt/벨모라/velmora-app"), "/opt/벨모라/velmora-app");
  EXPECT_EQ(execLine("/a b/app"), "\"/a b/app\"");
  EXPECT_EQ(execLine("/50%/app"), "/50%%/app");
  EXPECT_EQ(execLine(R"(/a"b`c$d\e/app)"), R"("/a\"b\`c\$d\\e/app")");
  EXPECT_EQ(execLine("/it's;here/app"), "\"/it's;here/app\"");
}

TEST(ExecLine, ReadsBackAsTheProgram) {
  for (const auto* path : {"/usr/bin/app", "/a b/app", "/50%/%f/app", R"(/a"b`c$d\e'f/app)", "/t\tn\nq/app",
                           "/벨모라/(app)*?#~|&;<>"}) {
    EXPECT_THAT(programAlone(execLine(path)), Optional(std::filesystem::path(path)));
  }
}

TEST(ExecLine, RefusesAPathThatADesktopFileCannotHold) {
  EXPECT_THROW(execLine("/bad\xff/app"), std::invalid_argument);
}

TEST(ProgramAlone, IsNothingForALineThatDoesMore) {
  for (const auto* line : {"", "/usr/bin/app --tray", "/usr/bin/app %U", "%f", "env A=1 /usr/bin/app",
                           "\"/unfinished", "/usr/bin/app%", "/usr/bin/app%i"}) {
    EXPECT_EQ(programAlone(line), std::nullopt) << line;
  }
}

}  // namespace
}  // namespace velmora
