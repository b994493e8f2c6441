#include "VelmoraHelper/Tools/DatesForPeople.h"

#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>

#include "BridgeModels/Date.h"

namespace velmora {

namespace {

std::optional<double> numberIn(const JSONValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value.storage)) return static_cast<double>(*integer);
  if (const auto* number = std::get_if<double>(&value.storage)) return *number;
  return std::nullopt;
}

std::string forPeople(Date date) {
  const auto milliseconds = std::floor(date.unixSeconds() * 1000);
  const auto fraction = static_cast<int>(milliseconds - std::floor(milliseconds / 1000) * 1000);
  auto text = Date::fromUnixSeconds(std::floor(milliseconds / 1000)).toIso8601();
  const auto digits = std::to_string(1000 + fraction).substr(1);
  return text.insert(text.size() - 1, "." + digits);
}

void writeDatesOf(JSONObject& members) {
  for (auto& [name, value] : members) {
    const auto seconds = name.ends_with("At") ? numberIn(value) : std::nullopt;
    if (!seconds) {
      writeDatesForPeople(value);
      continue;
    }
    try {
      value = forPeople(Date{*seconds});
    } catch (const std::range_error&) {  // no date that people would know: it stays a number
    }
  }
}

}  // namespace

void writeDatesForPeople(JSONValue& payload) {
  if (auto* members = std::get_if<JSONObject>(&payload.storage)) {
    writeDatesOf(*members);
  } else if (auto* elements = std::get_if<JSONArray>(&payload.storage)) {
    for (auto& element : *elements) writeDatesForPeople(element);
  }
}

}  // namespace velmora
