#include "BridgeModels/Json/JsonPart.h"

#include <algorithm>
#include <cmath>

#include "BridgeModels/Json/JsonWriter.h"

namespace velmora {

std::optional<std::int64_t> integerIn(const boost::json::value& value) {
  if (const auto* integer = value.if_int64()) return *integer;
  if (const auto* number = value.if_double()) {
    // Both bounds are exact doubles and out of range: what is written as -2^63 was read as an integer, and
    // the double may stand for a smaller number.
    constexpr double limit = 9223372036854775808.0;
    if (*number > -limit && *number < limit && *number == std::trunc(*number)) {
      return static_cast<std::int64_t>(*number);
    }
  }
  return std::nullopt;
}

std::optional<double> numberIn(const boost::json::value& value) {
  if (const auto* number = value.if_double()) return *number;
  if (const auto* integer = value.if_int64()) return static_cast<double>(*integer);
  if (const auto* large = value.if_uint64()) return static_cast<double>(*large);
  return std::nullopt;
}

std::vector<std::pair<std::string_view, const boost::json::value*>> sortedMembers(
    const boost::json::object& object) {
  std::vector<std::pair<std::string_view, const boost::json::value*>> members;
  members.reserve(object.size());
  for (const auto& member : object) {
    members.emplace_back(std::string_view(member.key().data(), member.key().size()), &member.value());
  }
  std::sort(members.begin(), members.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  return members;
}

void writeJson(JsonWriter& writer, JsonMembers members) {
  writer.beginObject();
  for (const auto& [name, value] : sortedMembers(members.value->get_object())) {
    writer.key(name);
    writeJson(writer, JsonPart{value});
  }
  writer.endObject();
}

void writeJson(JsonWriter& writer, JsonPart part) {
  const auto& value = *part.value;
  switch (value.kind()) {
    case boost::json::kind::null:
      return writer.null();
    case boost::json::kind::bool_:
      return writer.boolean(value.get_bool());
    case boost::json::kind::string:
      return writer.string({value.get_string().data(), value.get_string().size()});
    case boost::json::kind::object:
      return writeJson(writer, JsonMembers{&value});
    case boost::json::kind::array:
      writer.beginArray();
      for (const auto& element : value.get_array()) writeJson(writer, JsonPart{&element});
      return writer.endArray();
    default:
      break;
  }
  if (const auto integer = integerIn(value)) return writer.integer(*integer);
  writer.number(numberIn(value).value_or(0));
}

}  // namespace velmora
