// Writes a part of a parsed document by what a record's description says of it, without reading it into the
// record: what the description does not know stays as it is, so that an answer of a newer application loses
// nothing on its way.
#pragma once

#include <optional>
#include <type_traits>
#include <vector>

#include "BridgeModels/Json/JsonPart.h"
#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/Records.h"

namespace velmora {

/// A part of a document that should hold a `Value`. It is written as JsonPart is, but a number where the
/// description has a date is written as the writer's format says of dates. A date that the format has no text
/// for stays a number.
template <class Value>
struct JsonAs {
  JsonPart part{};
};

namespace detail {

// One for each kind of value that a description can name; all are declared first, since they call each other.
template <class Value>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<Value>);
template <class Value>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<std::optional<Value>>);
template <class Element>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<std::vector<Element>>);
inline void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<Date>);

template <class Value>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<std::optional<Value>>) {
  writeAs(writer, value, std::type_identity<Value>{});
}

template <class Element>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<std::vector<Element>>) {
  if (!value.is_array()) return writeJson(writer, JsonPart{&value});
  writer.beginArray();
  for (const auto& element : value.get_array()) writeAs(writer, element, std::type_identity<Element>{});
  writer.endArray();
}

inline void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<Date>) {
  if (const auto seconds = numberIn(value)) {
    try {
      return writer.date(Date{*seconds});
    } catch (const JsonEncodeError&) {  // nothing was written
    }
  }
  writeJson(writer, JsonPart{&value});
}

template <class Record, template <class...> class List, class... Member>
void writeMembersAs(JsonWriter& writer, const boost::json::object& object, List<Member...>) {
  const auto writeKnown = [&]<class One>(One, std::string_view name, const boost::json::value& value) {
    if (name != One::name) return false;
    using Field = std::remove_cvref_t<decltype(std::declval<Record>().*One::pointer)>;
    writeAs(writer, value, std::type_identity<Field>{});
    return true;
  };
  writer.beginObject();
  for (const auto& [name, value] : sortedMembers(object)) {
    writer.key(name);
    if (!(writeKnown(Member{}, name, *value) || ...)) writeJson(writer, JsonPart{value});
  }
  writer.endObject();
}

template <class Value>
void writeAs(JsonWriter& writer, const boost::json::value& value, std::type_identity<Value>) {
  if constexpr (DescribedRecord<Value>) {
    if (const auto* object = value.if_object()) {
      return writeMembersAs<Value>(writer, *object, MembersOf<Value>{});
    }
  }
  writeJson(writer, JsonPart{&value});
}

}  // namespace detail

template <class Value>
void writeJson(JsonWriter& writer, JsonAs<Value> as) {
  detail::writeAs(writer, *as.part.value, std::type_identity<Value>{});
}

}  // namespace velmora
