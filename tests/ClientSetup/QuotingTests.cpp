#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonReader.h"
#include "ClientSetup/Quoting.h"
#include "tests/support/ChildProgram.h"

namespace velmora {
namespace {

const std::vector<std::string> awkwardTexts{
    "/usr/bin/velmora",
    "/Applications/My Apps/velmora",
    R"(/a "quoted" and 'single' place/velmora)",
    R"(/back\slash\\twice\n\"/velmora)",
    "/dollar$HOME/${HOME}/$(echo no)/`echo no`/velmora",
    "/bang!!/!echo/velmora",
    "/stars*?[a]{b,c}~;&|<>()#/velmora",
    "/tab\tline\nbell\a/del\x7F/velmora",
    "/한국어 폴더/Ünïcode/👩‍👩‍👧‍👦/velmora",
    "",
};

// What the program prints when it gets `input`.
std::string printedBy(std::vector<std::string> command, const std::string& input) {
  testing::ChildProgram program(std::move(command), {{"PATH", "/usr/bin:/bin"}, {"HOME", "/nonexistent"}});
  program.write(input);
  program.closeInput();
  auto output = program.restOfOutput();
  EXPECT_EQ(program.wait(), 0) << program.restOfErrors();
  return output;
}

TEST(ShellQuoted, IsOneWordWithTheSameTextInEveryShell) {
  const std::vector<std::vector<std::string>> shells{{"dash"}, {"bash", "--norc"}, {"zsh", "-f"}};
  for (const auto& shell : shells) {
    for (const auto& text : awkwardTexts) {
      const auto script = "show() { printf '%s:%s' $# \"$1\"; }\nshow " + shellQuoted(text) + "\n";
      EXPECT_EQ(printedBy(shell, script), "1:" + text) << shell.front();
    }
  }
}

TEST(ShellQuoted, IsNotTakenForTheHistoryOfAnInteractiveShell) {
  const std::string script = "true earlier\nprintf %s " + shellQuoted("a!true!!") + "\n";
  EXPECT_EQ(printedBy({"bash", "--norc", "-o", "history", "-H"}, script), "a!true!!");
}

TEST(ShellQuoted, EnclosesAnOrdinaryPathInDoubleQuotesAndChangesNothing) {
  EXPECT_EQ(shellQuoted("/Applications/My Apps/velmora"), "\"/Applications/My Apps/velmora\"");
}

TEST(TomlQuoted, IsReadBackByATomlReader) {
  const std::vector<std::string> reader{
      "python3", "-c",
      "import json, sys, tomllib; print(json.dumps(tomllib.loads(sys.stdin.buffer.read().decode())))"};
  std::string document;
  JSONObject expected;
  for (const auto& text : awkwardTexts) {
    const auto key = "key" + std::to_string(expected.size());
    document += key + " = " + tomlQuoted(text) + "\n";
    expected.emplace(key, text);
  }
  EXPECT_EQ(decodeJson<JSONValue>(printedBy(reader, document)), JSONValue(expected));
}

}  // namespace
}  // namespace velmora
