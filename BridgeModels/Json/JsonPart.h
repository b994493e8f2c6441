// Parts of a parsed document that are passed on as they are: read from it later, or written out again.
#pragma once

#include <boost/json/value.hpp>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace velmora {

class JsonWriter;

/// Any value of a document, which must outlive it.
struct JsonPart {
  const boost::json::value* value = nullptr;
};

/// An object of a document, which must outlive it.
struct JsonMembers {
  const boost::json::value* value = nullptr;
};

/// The integer that a JSON number stands for, when it stands for one in the 64-bit range.
std::optional<std::int64_t> integerIn(const boost::json::value& value);

/// The number that the value is.
std::optional<double> numberIn(const boost::json::value& value);

/// The members of an object in the order of their names.
std::vector<std::pair<std::string_view, const boost::json::value*>> sortedMembers(
    const boost::json::object& object);

/// Both are written as a JSONValue of the same content: keys sorted, an integral number as an integer.
void writeJson(JsonWriter& writer, JsonPart part);
void writeJson(JsonWriter& writer, JsonMembers members);

}  // namespace velmora
