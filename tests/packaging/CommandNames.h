// Every word that a person can type after `velmora`, asked of the program itself.
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "BridgeModels/ToolName.h"
#include "ClientSetup/McpClients.h"
#include "tests/support/ChildProgram.h"

namespace velmora::testing {

using Names = std::set<std::string>;

inline std::string outputOf(std::vector<std::string> command, const Environment& more = {}) {
  Environment environment{{"PATH", "/usr/bin:/bin"}, {"HOME", "/nonexistent"}, {"LC_ALL", "C.UTF-8"}};
  environment.insert(more.begin(), more.end());
  ChildProgram program(std::move(command), environment);
  program.closeInput();
  auto output = program.restOfOutput();
  EXPECT_EQ(program.restOfErrors(), "");
  EXPECT_EQ(program.wait(), 0);
  return output;
}

inline Names linesOf(const std::string& text) {
  Names lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const auto end = std::min(text.find('\n', begin), text.size());
    if (end > begin) lines.insert(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

inline Names matchesIn(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  Names found;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), none; match != none; ++match) {
    found.insert(match->str(1));
  }
  return found;
}

/// The long options of the program, or of one of its commands.
inline Names optionNames(const std::string& command = "") {
  std::vector<std::string> arguments{VELMORA_BIN "/velmora"};
  if (!command.empty()) arguments.push_back(command);
  arguments.emplace_back("--help");
  auto names = matchesIn(outputOf(std::move(arguments)), "(--[a-z][a-z-]*)");
  EXPECT_EQ(names.count("--help"), 1u) << command;
  return names;
}

inline Names commandNames() {
  const auto help = outputOf({VELMORA_BIN "/velmora", "--help"});
  auto names = matchesIn(help.substr(help.find("Subcommands:")), "\n  ([a-z-]+)");
  EXPECT_GE(names.size(), 4u) << help;
  return names;
}

inline Names toolNames() {
  Names names;
  for (const auto& tool : enumCases<ToolName>) names.emplace(tool.wireName);
  return names;
}

inline Names clientNames() {
  Names names;
  for (const auto& client : mcpClients()) names.emplace(client.id);
  return names;
}

inline Names together(Names names, const Names& more) {
  names.insert(more.begin(), more.end());
  return names;
}

}  // namespace velmora::testing
