#include "BridgeModels/Json/JsonReader.h"

#include <cmath>
#include <limits>

namespace velmora {

namespace {

template <class Integer>
Integer narrowed(std::int64_t value, const JsonPath& path) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    path.fail("number out of range");
  }
  return static_cast<Integer>(value);
}

}  // namespace

void JsonPath::fail(const std::string& problem) const {
  const auto place = toString();
  throw JsonDecodeError(place.empty() ? problem : place + ": " + problem);
}

std::string JsonPath::toString() const {
  std::string text = parent == nullptr ? std::string() : parent->toString();
  if (position) return text + "[" + std::to_string(*position) + "]";
  if (!text.empty() && !key.empty()) text.push_back('.');
  return text.append(key);
}

void JsonReader::read(bool& out) const {
  const auto* boolean = value_.if_bool();
  if (boolean == nullptr) path_.fail("expected true or false");
  out = *boolean;
}

void JsonReader::read(std::int64_t& out) const {
  const auto integer = integerIn(value_);
  if (!integer) path_.fail("expected a 64-bit integer");
  out = *integer;
}

void JsonReader::read(std::int32_t& out) const {
  std::int64_t wide = 0;
  read(wide);
  out = narrowed<std::int32_t>(wide, path_);
}

void JsonReader::read(std::uint32_t& out) const {
  std::int64_t wide = 0;
  read(wide);
  out = narrowed<std::uint32_t>(wide, path_);
}

void JsonReader::read(double& out) const {
  const auto number = numberIn(value_);
  if (!number) path_.fail("expected a number");
  if (!std::isfinite(*number)) path_.fail("number out of range");
  out = *number;
}

void JsonReader::read(std::string& out) const { out = text(); }

void JsonReader::read(Uuid& out) const {
  const auto uuid = Uuid::parse(text());
  if (!uuid) path_.fail("expected a UUID");
  out = *uuid;
}

void JsonReader::read(Date& out) const {
  if (format_.dates == JsonFormat::Dates::seconds) return read(out.secondsSinceReferenceDate);
  const auto date = Date::parseIso8601(text());
  if (!date) path_.fail("expected an ISO 8601 date");
  out = *date;
}

void JsonReader::read(JSONValue& out) const {
  switch (value_.kind()) {
    case boost::json::kind::null:
      out = nullptr;
      return;
    case boost::json::kind::bool_:
      out = value_.get_bool();
      return;
    case boost::json::kind::string:
      out = std::string(text());
      return;
    case boost::json::kind::array:
      read(out.storage.emplace<JSONArray>());
      return;
    case boost::json::kind::object:
      read(out.storage.emplace<JSONObject>());
      return;
    default:
      break;
  }
  if (const auto integer = integerIn(value_)) {
    out = *integer;
    return;
  }
  read(out.storage.emplace<double>());
}

void JsonReader::read(JSONObject& out) const {
  out.clear();
  for (const auto& member : object()) {
    const std::string_view name(member.key().data(), member.key().size());
    const JsonPath place{.parent = &path_, .key = name};
    JsonReader(member.value(), place, format_).read(out[std::string(name)]);
  }
}

void JsonReader::read(JsonPart& out) const { out.value = &value_; }

void JsonReader::read(JsonMembers& out) const {
  object();  // or it fails
  out.value = &value_;
}

const boost::json::value* JsonReader::present(const boost::json::object& object, std::string_view name) {
  const auto* found = object.if_contains(boost::json::string_view(name.data(), name.size()));
  return found == nullptr || found->is_null() ? nullptr : found;
}

std::string_view JsonReader::text() const {
  const auto* string = value_.if_string();
  if (string == nullptr) path_.fail("expected a string");
  return {string->data(), string->size()};
}

const boost::json::array& JsonReader::array() const {
  const auto* elements = value_.if_array();
  if (elements == nullptr) path_.fail("expected an array");
  return *elements;
}

const boost::json::object& JsonReader::object() const {
  const auto* members = value_.if_object();
  if (members == nullptr) path_.fail("expected an object");
  return *members;
}

}  // namespace velmora
