#include <gmock/gmock.h>

#include "ClientSetup/ConfigText.h"

namespace velmora {
namespace {

using enum ConfigLanguage;
using ::testing::HasSubstr;

const ConfigPath cursorPath{"mcpServers", "terminal"};
const std::vector<ConfigMember> helper{{"command", "/opt/velmora"}};
const std::vector<ConfigMember> extendedHelper{{"command", "/opt/velmora"},
                                               {"args", JSONArray{"--extended"}}};

std::string added(std::string_view text, ConfigLanguage language = jsonWithComments,
                  const std::vector<ConfigMember>& members = helper) {
  return withEntry(language, text, cursorPath, members);
}

TEST(ConfigText, MakesAFileOfAnEmptyOne) {
  const std::string whole = R"({
  "mcpServers": {
    "terminal": {
      "command": "/opt/velmora"
    }
  }
}
)";
  EXPECT_EQ(added(""), whole);
  EXPECT_EQ(added(" \n"), whole);
  EXPECT_EQ(added("{}\n"), whole);
}

TEST(ConfigText, AddsBehindTheOthersAndLeavesEveryOtherByte) {
  EXPECT_EQ(added(R"(// mine
{
    "theme": "dark", // of course
    "mcpServers": {
        "other": {"command": "x"} /* keep */
        // and this
    },
    "z": [1,2 , 3]
}
)"),
            R"(// mine
{
    "theme": "dark", // of course
    "mcpServers": {
        "other": {"command": "x"}, /* keep */
        // and this
        "terminal": {
            "command": "/opt/velmora"
        }
    },
    "z": [1,2 , 3]
}
)");
}

TEST(ConfigText, WritesAsTheFileIsWritten) {
  EXPECT_EQ(added("{\r\n\t\"a\": 1\r\n}\r\n"),
            "{\r\n\t\"a\": 1,\r\n\t\"mcpServers\": {\r\n\t\t\"terminal\": {\r\n\t\t\t\"command\": "
            "\"/opt/velmora\"\r\n\t\t}\r\n\t}\r\n}\r\n");
  EXPECT_EQ(added(R"({"mcpServers": {"a": {}}})"),
            R"({"mcpServers": {"a": {}, "terminal": {"command":"/opt/velmora"}}})");
  EXPECT_EQ(added(R"({"mcpServers": {}})"), R"({"mcpServers": {"terminal": {"command":"/opt/velmora"}}})");
  EXPECT_EQ(added("\xEF\xBB\xBF{\n  \"a\": 1,\n}"),
            "\xEF\xBB\xBF{\n  \"a\": 1,\n  \"mcpServers\": {\n    \"terminal\": {\n      \"command\": "
            "\"/opt/velmora\"\n    }\n  },\n}");
}

TEST(ConfigText, ChangesOnlyTheMembersThatItIsTold) {
  const std::string old = R"({
  "mcpServers": {
    "terminal": {
      "command": "/old/velmora", // moved
      "env": { "VELMORA_LOG": "1" },
      "args": ["--extended"]
    }
  }
})";
  EXPECT_EQ(added(old, jsonWithComments, {{"command", "/new"}, {"args", std::nullopt}}), R"({
  "mcpServers": {
    "terminal": {
      "command": "/new", // moved
      "env": { "VELMORA_LOG": "1" }
    }
  }
})");
}

// Whatever a file looks like, what was put in comes out again without a trace.
TEST(ConfigText, TakesOutWhatItPutIn) {
  for (const auto* text : {
           "{\n  \"mcpServers\": {\n    \"a\": {}\n  }\n}\n",
           "{\n  \"mcpServers\": {\n    \"a\": {} // c\n  }\n}\n",
           "{\n  \"mcpServers\": {\n    \"a\": {},\n  }\n}\n",
           "{\n  \"mcpServers\": {}\n}\n",
           "{\"mcpServers\": {\"a\": {}}, \"b\": 2}",
           "{\"mcpServers\": {}}",
           "{\r\n  \"mcpServers\": {\r\n    \"a\": 1\r\n  }\r\n}",
       }) {
    const auto with = added(text);
    EXPECT_TRUE(readEntry(jsonWithComments, with, cursorPath).has_value()) << with;
    const auto without = withoutEntry(jsonWithComments, with, cursorPath);
    EXPECT_EQ(readEntry(jsonWithComments, without, cursorPath), std::nullopt);
    EXPECT_EQ(without, text) << with;
  }
  for (const auto* text : {"", "model = \"o\"\n", "[mcp_servers.other]\ncommand = \"x\" # c\n\n# end\n",
                           "[profiles.a]\r\nb = 1\r\n", "[[projects]]\nx = { y = [1, 2] }\n"}) {
    const ConfigPath path{"mcp_servers", "terminal"};
    EXPECT_EQ(withoutEntry(toml, withEntry(toml, text, path, extendedHelper), path), text);
  }
}

TEST(ConfigText, TakesOutAnEntryWhereverItStands) {
  const auto removed = [](std::string_view text) { return withoutEntry(jsonWithComments, text, cursorPath); };
  EXPECT_EQ(removed(R"({"mcpServers": {"terminal": {}, "b": 1}})"), R"({"mcpServers": {"b": 1}})");
  EXPECT_EQ(removed(R"({"mcpServers": {"a": 0, "terminal": {}, "b": 1}})"),
            R"({"mcpServers": {"a": 0, "b": 1}})");
  EXPECT_EQ(removed("{\"mcpServers\": {\n  \"a\": 0, // first\n  \"terminal\": {} // ours\n}}"),
            "{\"mcpServers\": {\n  \"a\": 0 // first // ours\n}}");
  EXPECT_EQ(removed("{\"mcpServers\": { // c\n  \"terminal\": {} }}"), "{\"mcpServers\": { // c\n   }}");
  EXPECT_EQ(removed("{\"mcpServers\": {\n  \"terminal\": {}, \"b\": 1\n}}"),
            "{\"mcpServers\": {\n  \"b\": 1\n}}");
  EXPECT_EQ(removed("{\"mcpServers\": {\n  \"terminal\": {} /* x */,\n  \"b\": 1\n}}"),
            "{\"mcpServers\": { /* x */\n  \"b\": 1\n}}");
}

TEST(ConfigText, RefusesWhatItCannotRead) {
  const auto problemOf = [](std::string_view text, ConfigLanguage language) {
    try {
      withEntry(language, text, cursorPath, helper);
    } catch (const ConfigTextError& error) {
      return std::string(error.what());
    }
    return std::string("no problem");
  };
  EXPECT_EQ(problemOf("{\n  \"a\": 1\n  \"b\": 2\n}", jsonWithComments), "cannot be read at line 3");
  EXPECT_EQ(problemOf("{\"a\": 1} x", json), "cannot be read at line 1");
  EXPECT_EQ(problemOf("{\"a\": \"\\", json), "cannot be read at line 1");
  EXPECT_EQ(problemOf("{ // c\n}", json), "cannot be read at line 1");
  EXPECT_EQ(problemOf("{\"a\": 1,}", json), "cannot be read at line 1");
  EXPECT_EQ(problemOf("{a: 1}", jsonWithComments), "cannot be read at line 1");
  EXPECT_EQ(problemOf("{ /* c", jsonWithComments), "cannot be read at line 1");
  EXPECT_EQ(problemOf("[]", json), "holds no object");
  EXPECT_EQ(problemOf("{\"mcpServers\": []}", json), "has a \"mcpServers\" that is no object");
  EXPECT_EQ(problemOf("{\"mcpServers\": {\"terminal\": null}}", json),
            "has a \"terminal\" that is no object");
  EXPECT_EQ(problemOf("{\"mcpServers\": {}, \"mcpServers\": {}}", json), "has \"mcpServers\" twice");
  EXPECT_EQ(problemOf("{\"a\": \"\xFF\"}", json), "is not UTF-8");
  EXPECT_EQ(problemOf(std::string(100'000, '['), json), "cannot be read at line 1");
}

TEST(ConfigText, ReadsJson5WhereTheClientDoes) {
  const std::string text = R"({
  // JSON5
  gateway: { port: +1, hex: 0xFF, half: .5, 'odd \'key\'': "line\
break", none: NaN },
  mcpServers: { terminal: { command: '/x/vel\x6Dora "q"' } },
})";
  const auto entry = readEntry(json5, text, cursorPath);
  ASSERT_TRUE(entry.has_value());
  EXPECT_EQ(entry->at("command"), JSONValue("/x/velmora \"q\""));
  EXPECT_THAT(withEntry(json5, text, cursorPath, helper),
              HasSubstr("mcpServers: { terminal: { command: \"/opt/velmora\" } },\n}"));
  EXPECT_THAT(withEntry(json5, text, {"mcpServers", "two"}, helper),
              HasSubstr("'/x/vel\\x6Dora \"q\"' }, \"two\": {\"command\":\"/opt/velmora\"} },\n"));
}

class TomlConfigText : public ::testing::Test {
 protected:
  const ConfigPath path{"mcp_servers", "terminal"};
};

TEST_F(TomlConfigText, GetsATableAtItsEnd) {
  EXPECT_EQ(withEntry(toml, "model = \"o\" # mine", path, extendedHelper),
            "model = \"o\" # mine\n\n[mcp_servers.terminal]\ncommand = \"/opt/velmora\"\nargs = "
            "[\"--extended\"]\n");
}

TEST_F(TomlConfigText, ChangesOnlyTheKeysThatItIsTold) {
  const std::string old =
      "# top\n[mcp_servers.terminal]\ncommand = '/old' # here\nargs = [\n  \"--extended\", # yes\n]\n"
      "startup_timeout_sec = 20\n\n[mcp_servers.terminal.env]\nA = \"1\"\n\n[tui]\nx = 2026-11-22 10:00:00Z\n";
  EXPECT_EQ(readEntry(toml, old, path)->at("args"), JSONValue(JSONArray{"--extended"}));
  const std::vector<ConfigMember> changes{{"command", "/new"}, {"args", std::nullopt}};
  EXPECT_EQ(withEntry(toml, old, path, changes),
            "# top\n[mcp_servers.terminal]\ncommand = \"/new\" # here\nstartup_timeout_sec = 20\n\n"
            "[mcp_servers.terminal.env]\nA = \"1\"\n\n[tui]\nx = 2026-11-22 10:00:00Z\n");
  EXPECT_EQ(withoutEntry(toml, old, path), "# top\n\n[tui]\nx = 2026-11-22 10:00:00Z\n");
  const std::vector<ConfigMember> more{{"cwd", "/"}};
  EXPECT_THAT(withEntry(toml, old, path, more),
              HasSubstr("startup_timeout_sec = 20\ncwd = \"/\"\n\n[mcp_servers.terminal.env]"));
}

TEST_F(TomlConfigText, IsRefusedWhenItCannotBeReadOrHasTheEntryInAnotherForm) {
  for (const auto* text : {"a = ", "a = \"x", "= 1", "[a", "a = [1, 2", "a = 1 b = 2", "a = '''x", "a b = 1",
                           "x = {y = 1", "["}) {
    EXPECT_THROW(withEntry(toml, text, path, helper), ConfigTextError) << text;
  }
  for (const auto* text :
       {"mcp_servers = {}", "mcp_servers.terminal.command = \"x\"",
        "[mcp_servers]\nterminal = { command = \"x\" }", "[[mcp_servers]]\nx = 1",
        "[mcp_servers.terminal]\n[mcp_servers.terminal]", "[mcp_servers.terminal]\nargs = []\nargs = []"}) {
    EXPECT_THROW(withEntry(toml, text, path, helper), ConfigTextError) << text;
    EXPECT_THROW(readEntry(toml, text, path), ConfigTextError) << text;
  }
  EXPECT_EQ(readEntry(toml, "[mcp_servers.other]\nterminal.command = 1\n", path), std::nullopt);
}

TEST_F(TomlConfigText, IsReadWithEveryKindOfText) {
  const std::string text =
      "a = \"\"\"\n[mcp_servers.terminal]\n\"\"\"\nb = '''\n[x'''\n[ mcp_servers . \"terminal\" ]\n"
      "command = 'C:\\x'\n";
  EXPECT_EQ(readEntry(toml, text, path)->at("command"), JSONValue("C:\\x"));
}

}  // namespace
}  // namespace velmora
