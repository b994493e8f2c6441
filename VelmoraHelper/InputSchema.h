// The JSON Schema of a tool's input, made from the same record description that the decoder walks, so that
// what is advertised and what is accepted cannot drift apart. Texts and ranges, which a description does not
// hold, come from a table of fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/ToolInputs.h"

namespace velmora {

/// What a schema says of a field beyond its type. A field means the same in every input that has it.
struct FieldRule {
  std::string_view field;
  std::string_view description;
  std::optional<IntegerRange> range{};
  std::optional<std::int64_t> minimumLength{};
};

/// The rule of `field`. Throws std::logic_error for a field that has none.
const FieldRule& fieldRule(std::string_view field);

namespace detail {

template <class T>
struct ValueOf {
  using type = T;
};
template <class T>
struct ValueOf<std::optional<T>> {
  using type = T;
};

template <class Value>
void writeMember(JsonWriter& writer, std::string_view name, const Value& value) {
  writer.key(name);
  writeJson(writer, value);
}

inline void writeMember(JsonWriter& writer, std::string_view name, std::string_view value) {
  writer.key(name);
  writer.string(value);
}

template <class Value>
void writeType(JsonWriter& writer) {
  if constexpr (std::is_same_v<Value, bool>) {
    writeMember(writer, "type", std::string_view("boolean"));
  } else if constexpr (std::is_same_v<Value, std::int64_t>) {
    writeMember(writer, "type", std::string_view("integer"));
  } else {
    writeMember(writer, "type", std::string_view("string"));
  }
  if constexpr (std::is_same_v<Value, Uuid>) {
    writeMember(writer, "format", std::string_view("uuid"));
    writeMember(
        writer, "pattern",
        std::string_view("^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$"));
  } else if constexpr (std::is_enum_v<Value>) {
    writer.key("enum");
    writer.beginArray();
    for (const auto& entry : enumCases<Value>) writer.string(entry.wireName);
    writer.endArray();
  } else {
    static_assert(std::is_same_v<Value, bool> || std::is_same_v<Value, std::int64_t> ||
                      std::is_same_v<Value, std::string>,
                  "a kind of field that no schema is known for");
  }
}

template <class Input, class Member>
void writeField(JsonWriter& writer) {
  using Field = std::remove_cvref_t<decltype(std::declval<Input>().*Member::pointer)>;
  const auto& rule = fieldRule(Member::name);
  writer.key(Member::name);
  writer.beginObject();
  writeType<typename ValueOf<Field>::type>(writer);
  if (rule.range) {
    writeMember(writer, "minimum", rule.range->minimum);
    writeMember(writer, "maximum", rule.range->maximum);
  }
  if (rule.minimumLength) writeMember(writer, "minLength", *rule.minimumLength);
  if constexpr (takesDefault<Input>(Member::pointer)) {
    writeMember(writer, "default", Input{}.*Member::pointer);
  }
  writeMember(writer, "description", rule.description);
  writer.endObject();
}

template <class Input, class Member>
constexpr bool isRequired() {
  using Field = std::remove_cvref_t<decltype(std::declval<Input>().*Member::pointer)>;
  return !takesDefault<Input>(Member::pointer) && !isOptional<Field>;
}

template <class Input, template <class...> class List, class... Member>
void writeFields(JsonWriter& writer, List<Member...>) {
  if constexpr (sizeof...(Member) > 0) {
    writer.key("properties");
    writer.beginObject();
    (writeField<Input, Member>(writer), ...);
    writer.endObject();
  }
  if constexpr ((isRequired<Input, Member>() || ...)) {
    writer.key("required");
    writer.beginArray();
    ((isRequired<Input, Member>() ? writer.string(Member::name) : void()), ...);
    writer.endArray();
  }
}

}  // namespace detail

template <class Input>
void writeInputSchema(JsonWriter& writer) {
  writer.beginObject();
  detail::writeMember(writer, "type", std::string_view("object"));
  detail::writeFields<Input>(writer, MembersOf<Input>{});
  detail::writeMember(writer, "additionalProperties", false);
  writer.endObject();
}

}  // namespace velmora
