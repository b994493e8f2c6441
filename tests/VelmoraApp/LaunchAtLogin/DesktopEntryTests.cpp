#include <gmock/gmock.h>

#include <stdexcept>

#include "VelmoraApp/LaunchAtLogin/DesktopEntry.h"

namespace velmora {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

TEST(DesktopEntry, ReadsEachKindOfValue) {
  const auto entry = DesktopEntry::parse(
      "# mine\n[Desktop Entry]\nName=A\\sB\\\\C\nHidden=true\nTerminal=perhaps\nOnlyShowIn=GNOME;KDE;\n");
  ASSERT_TRUE(entry);
  EXPECT_THAT(entry->text("Name"), Optional(std::string("A B\\C")));
  EXPECT_THAT(entry->boolean("Hidden"), Optional(true));
  EXPECT_EQ(entry->boolean("Terminal"), std::nullopt);
  EXPECT_EQ(entry->boolean("NoDisplay"), std::nullopt);
  EXPECT_THAT(entry->list("OnlyShowIn"), Optional(ElementsAre("GNOME", "KDE")));
  EXPECT_EQ(entry->list("NotShowIn"), std::nullopt);
  EXPECT_EQ(entry->text("Exec"), std::nullopt);
}

TEST(DesktopEntry, IsNothingWithoutItsGroup) {
  for (const auto* bytes : {"", "Name=A\n", "[Other]\nName=A\n", "[Desktop Entry", "\0\1\2"}) {
    EXPECT_FALSE(DesktopEntry::parse(bytes)) << bytes;
  }
}

TEST(DesktopEntry, KeepsWhatItWasNotAskedToChange) {
  const std::string rest =
      "Name[ko]=벨모라\n# a note\nX-Own=1;2\n\n[Desktop Action New]\nName=New\nExec=new \"a b\"\n";
  auto entry = DesktopEntry::parse("#!/usr/bin/env xdg-open\n\n[Desktop Entry]\nName=Old\n" + rest);
  ASSERT_TRUE(entry);
  entry->set("Name", std::string("New"));
  EXPECT_EQ(entry->bytes(), "#!/usr/bin/env xdg-open\n\n[Desktop Entry]\nName=New\n" + rest);
}

TEST(DesktopEntry, WritesWhatItReadsBack) {
  DesktopEntry entry;
  entry.set("Name", std::string(" line\nwith \\ and ; "));
  entry.set("Hidden", false);
  entry.set("OnlyShowIn", std::vector<std::string>{"A", "B;C"});
  entry.set("Comment", std::string("gone"));
  entry.remove("Comment");
  const auto again = DesktopEntry::parse(entry.bytes());
  ASSERT_TRUE(again);
  EXPECT_THAT(again->text("Name"), Optional(std::string(" line\nwith \\ and ; ")));
  EXPECT_THAT(again->boolean("Hidden"), Optional(false));
  EXPECT_THAT(again->list("OnlyShowIn"), Optional(ElementsAre("A", "B;C")));
  EXPECT_EQ(again->text("Comment"), std::nullopt);
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
