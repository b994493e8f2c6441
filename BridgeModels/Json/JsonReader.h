// Reads a parsed document into values, strictly: a missing required key, a wrong type or an unknown enum name
// fails with the path of the place. Unknown keys are ignored; a null and a missing key both mean "no value".
// A number with an integral value in the 64-bit range reads as an integer, however it is written.
#pragma once

#include <boost/json/value.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "BridgeModels/Date.h"
#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Json/JsonDocument.h"
#include "BridgeModels/Json/JsonFormat.h"
#include "BridgeModels/Json/JsonPart.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/Uuid.h"
#include "BridgeModels/WireNames.h"

namespace velmora {

/// A place in a JSON document: a chain of keys and positions that ends at the root. It lives on the stack of
/// the reader and becomes text only when something is wrong there.
struct JsonPath {
  const JsonPath* parent = nullptr;
  std::string_view key{};
  std::optional<std::size_t> position{};

  [[noreturn]] void fail(const std::string& problem) const;
  std::string toString() const;
};

/// Reads the value at one place. Stateless beyond that; the document must outlive it.
class JsonReader {
 public:
  /// Reads the whole document.
  explicit JsonReader(const boost::json::value& document, JsonFormat format = JsonFormat::wire)
      : JsonReader(document, JsonPath{}, format) {}
  explicit JsonReader(boost::json::value&&, JsonFormat = JsonFormat::wire) = delete;
  JsonReader(const boost::json::value& value, JsonPath path, JsonFormat format)
      : value_(value), path_(path), format_(format) {}

  void read(bool& out) const;
  void read(std::int64_t& out) const;
  void read(std::int32_t& out) const;
  void read(std::uint32_t& out) const;
  void read(double& out) const;
  void read(std::string& out) const;
  void read(Uuid& out) const;
  void read(Date& out) const;
  void read(JSONValue& out) const;
  void read(JSONObject& out) const;
  void read(JsonPart& out) const;
  void read(JsonMembers& out) const;

  template <class Enum>
  requires std::is_enum_v<Enum>
  void read(Enum& out) const {
    const auto name = text();
    const auto found = fromWireName<Enum>(name);
    if (!found) path_.fail("unknown value \"" + std::string(name) + "\"");
    out = *found;
  }

  template <class Value>
  void read(std::optional<Value>& out) const {
    Value value{};
    read(value);
    out = std::move(value);
  }

  template <class Element>
  void read(std::vector<Element>& out) const {
    const auto& elements = array();
    out.clear();
    out.reserve(elements.size());
    for (std::size_t index = 0; index < elements.size(); ++index) {
      const JsonPath place{.parent = &path_, .position = index};
      JsonReader(elements[index], place, format_).read(out.emplace_back());
    }
  }

  template <class Record>
  requires DescribedRecord<Record>
  void read(Record& out) const { readMembers(out, object(), MembersOf<Record>{}); }

 private:
  template <class Record, template <class...> class List, class... Member>
  void readMembers(Record& out, const boost::json::object& object, List<Member...>) const {
    (readMember(out.*Member::pointer, object, Member::name, takesDefault<Record>(Member::pointer)), ...);
  }

  template <class Value>
  void readMember(Value& out, const boost::json::object& object, std::string_view name,
                  bool hasDefault) const {
    const JsonPath place{.parent = &path_, .key = name};
    const auto* found = present(object, name);
    if (found != nullptr) return JsonReader(*found, place, format_).read(out);
    if (!hasDefault && !isOptional(out)) place.fail("missing");
  }

  template <class Value>
  static constexpr bool isOptional(const Value&) {
    return false;
  }
  template <class Value>
  static constexpr bool isOptional(const std::optional<Value>&) {
    return true;
  }

  // The member's value, or nothing when it is missing or null.
  static const boost::json::value* present(const boost::json::object& object, std::string_view name);

  std::string_view text() const;
  const boost::json::array& array() const;
  const boost::json::object& object() const;

  const boost::json::value& value_;
  JsonPath path_;
  JsonFormat format_;
};

/// The value of type `T` that `text` holds. Throws JsonDecodeError.
template <class T>
T decodeJson(std::string_view text, JsonFormat format = JsonFormat::wire) {
  return withJson(text, [format](const boost::json::value& document) {
    T value{};
    JsonReader(document, format).read(value);
    return value;
  });
}

}  // namespace velmora
