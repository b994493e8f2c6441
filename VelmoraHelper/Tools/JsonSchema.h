// The JSON Schema of each kind of value that a record can hold. Schemas are written from the records'
// descriptions, which the encoder and the decoder walk too, so that they cannot drift apart.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/ToolForm.h"

namespace velmora {

namespace detail {

template <class T>
struct OptionalValue {
  using type = T;
};
template <class T>
struct OptionalValue<std::optional<T>> {
  using type = T;
};

template <class T>
inline constexpr bool isVector = false;
template <class T>
inline constexpr bool isVector<std::vector<T>> = true;

template <class Record, class Member>
using FieldOf = std::remove_cvref_t<decltype(std::declval<Record>().*Member::pointer)>;

}  // namespace detail

/// The type of a field's value when it is there.
template <class Field>
using ValueOf = typename detail::OptionalValue<Field>::type;

/// The names of the cases that the form has.
template <class Enum>
std::vector<std::string_view> namesOf(ToolForm form) {
  std::vector<std::string_view> names;
  names.reserve(enumCases<Enum>.size() + extendedCases<Enum>.size());
  for (const auto& entry : enumCases<Enum>) names.push_back(entry.wireName);
  if (form == ToolForm::plain) return names;
  for (const auto& entry : extendedCases<Enum>) names.push_back(entry.wireName);
  return names;
}

/// Whether the form has the member.
template <class Record, class Member>
constexpr bool isOffered(Member Record::*member, ToolForm form) {
  return form == ToolForm::extended || !isExtended(member);
}

template <class Record>
void writeRecordSchema(JsonWriter& writer, ToolForm form);

/// The keywords that say what a value is, inside an object that the caller has begun.
template <class Value>
void writeSchemaType(JsonWriter& writer, ToolForm form) {
  if constexpr (std::is_same_v<Value, bool>) {
    writeMember(writer, "type", "boolean");
  } else if constexpr (std::is_integral_v<Value>) {
    writeMember(writer, "type", "integer");
  } else if constexpr (std::is_enum_v<Value>) {
    writeMember(writer, "type", "string");
    writer.key("enum");
    writer.beginArray();
    for (const auto name : namesOf<Value>(form)) writer.string(name);
    writer.endArray();
  } else if constexpr (std::is_same_v<Value, Date>) {
    writeMember(writer, "type", "string");
    writeMember(writer, "format", "date-time");
  } else if constexpr (std::is_same_v<Value, Uuid>) {
    writeMember(writer, "type", "string");
    writeMember(writer, "format", "uuid");
    writeMember(writer, "pattern",
                "^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$");
  } else if constexpr (detail::isVector<Value>) {
    writeMember(writer, "type", "array");
    writer.key("items");
    writer.beginObject();
    writeSchemaType<typename Value::value_type>(writer, form);
    writer.endObject();
  } else if constexpr (DescribedRecord<Value>) {
    writeRecordSchema<Value>(writer, form);
  } else {
    static_assert(std::is_same_v<Value, std::string>, "a kind of value that no schema is known for");
    writeMember(writer, "type", "string");
  }
}

namespace detail {

template <class Record, template <class...> class List, class... Member>
void writeRecordMembers(JsonWriter& writer, ToolForm form, List<Member...>) {
  writer.key("properties");
  writer.beginObject();
  const auto writeProperty = [&writer, form]<class One>(One) {
    if (!isOffered<Record>(One::pointer, form)) return;
    writer.key(One::name);
    writer.beginObject();
    writeSchemaType<ValueOf<FieldOf<Record, One>>>(writer, form);
    writer.endObject();
  };
  (writeProperty(Member{}), ...);
  writer.endObject();
  writer.key("required");
  writer.beginArray();
  ((isOptional<FieldOf<Record, Member>> ? void() : writer.string(Member::name)), ...);
  writer.endArray();
}

}  // namespace detail

/// The keywords of an object that holds a record as it is encoded. Further members are allowed, so that a
/// newer application may say more.
template <class Record>
void writeRecordSchema(JsonWriter& writer, ToolForm form) {
  writeMember(writer, "type", "object");
  detail::writeRecordMembers<Record>(writer, form, MembersOf<Record>{});
}

}  // namespace velmora
