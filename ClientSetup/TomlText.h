// TOML, as far as one table of it has to be found, read and changed. Stateless; any thread.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ClientSetup/ConfigText.h"

namespace velmora {

/// A table's heading, or a key with its value.
struct TomlStatement {
  enum class Kind { table, tableOfArray, pair };

  Kind kind = Kind::pair;
  std::size_t begin = 0;
  std::size_t end = 0;      ///< Of the heading or the value; a comment may follow.
  ConfigPath path{};        ///< From the whole document; the table's path comes first.
  std::size_t inTable = 0;  ///< How many names of the path the table's heading gave.
  std::size_t valueBegin = 0;
  JSONValue value{};  ///< A text or a list of texts; null for anything else.
};

/// Every statement of the document, in its order. Throws ConfigTextError with the line of what is wrong.
std::vector<TomlStatement> tomlStatements(std::string_view text);

}  // namespace velmora
