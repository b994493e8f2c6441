// A JSON value of any shape: the arguments of a tool call and the payload of its answer travel in it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace velmora {

struct JSONValue;

using JSONArray = std::vector<JSONValue>;
using JSONObject = std::map<std::string, JSONValue, std::less<>>;

/// Exactly one of: bool, 64-bit integer, double, string, array, object, null. Objects compare as unordered
/// maps. A number that reads as a 64-bit integer is an integer, any other number a double.
struct JSONValue {
  using Storage =
      std::variant<std::monostate, bool, std::int64_t, double, std::string, JSONArray, JSONObject>;

  Storage storage{};

  JSONValue() = default;
  JSONValue(std::nullptr_t) {}                                         // NOLINT(google-explicit-constructor)
  JSONValue(bool value) : storage(value) {}                            // NOLINT(google-explicit-constructor)
  JSONValue(std::int64_t value) : storage(value) {}                    // NOLINT(google-explicit-constructor)
  JSONValue(int value) : storage(static_cast<std::int64_t>(value)) {}  // NOLINT(google-explicit-constructor)
  JSONValue(double value) : storage(value) {}                          // NOLINT(google-explicit-constructor)
  JSONValue(std::string value) : storage(std::move(value)) {}          // NOLINT(google-explicit-constructor)
  JSONValue(const char* value) : storage(std::string(value)) {}        // NOLINT(google-explicit-constructor)
  JSONValue(JSONArray value) : storage(std::move(value)) {}            // NOLINT(google-explicit-constructor)
  JSONValue(JSONObject value) : storage(std::move(value)) {}           // NOLINT(google-explicit-constructor)

  bool isNull() const { return std::holds_alternative<std::monostate>(storage); }
  const JSONObject* object() const { return std::get_if<JSONObject>(&storage); }
  const JSONArray* array() const { return std::get_if<JSONArray>(&storage); }
  const std::string* string() const { return std::get_if<std::string>(&storage); }

  /// The member `key` of an object, or nothing when this is no object or has no such key.
  const JSONValue* find(std::string_view key) const {
    const auto* members = object();
    if (members == nullptr) return nullptr;
    const auto found = members->find(key);
    return found == members->end() ? nullptr : &found->second;
  }

  bool operator==(const JSONValue&) const;
};

// Behind the class, whose storage can be compared only when the class is complete.
inline bool JSONValue::operator==(const JSONValue& other) const { return storage == other.storage; }

}  // namespace velmora
