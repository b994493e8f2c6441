// How each kind of value becomes JSON: records member by member from their description, enums by wire name,
// UUIDs as upper-case text, optional members left out when absent.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "BridgeModels/JSONValue.h"
#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/Records.h"
#include "BridgeModels/Uuid.h"
#include "BridgeModels/WireNames.h"

namespace velmora {

template <class Record>
requires DescribedRecord<Record>
void writeJson(JsonWriter& writer, const Record& record);
void writeJson(JsonWriter& writer, const JSONValue& value);

inline void writeJson(JsonWriter& writer, bool value) { writer.boolean(value); }
inline void writeJson(JsonWriter& writer, double value) { writer.number(value); }
inline void writeJson(JsonWriter& writer, const std::string& value) { writer.string(value); }
inline void writeJson(JsonWriter& writer, const Uuid& value) { writer.string(value.toString()); }
inline void writeJson(JsonWriter& writer, Date value) { writer.date(value); }

template <class Integer>
requires(std::is_integral_v<Integer> && !std::is_same_v<Integer, bool>) void writeJson(JsonWriter& writer,
                                                                                       Integer value) {
  writer.integer(static_cast<std::int64_t>(value));
}

template <class Enum>
requires std::is_enum_v<Enum>
void writeJson(JsonWriter& writer, Enum value) { writer.string(wireName(value)); }

template <class Element>
void writeJson(JsonWriter& writer, const std::vector<Element>& elements) {
  writer.beginArray();
  for (const auto& element : elements) writeJson(writer, element);
  writer.endArray();
}

inline void writeJson(JsonWriter& writer, const JSONObject& members) {
  writer.beginObject();
  for (const auto& [name, value] : members) {
    writer.key(name);
    writeJson(writer, value);
  }
  writer.endObject();
}

namespace detail {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

template <class Record>
struct MemberWriter {
  std::string_view name;
  void (*write)(JsonWriter&, std::string_view name, const Record&);
};

template <class Record, class Member>
void writeField(JsonWriter& writer, std::string_view name, const Record& record) {
  const auto& value = record.*Member::pointer;
  if constexpr (isOptional<std::remove_cvref_t<decltype(value)>>) {
    if (!value) return;
    writer.key(name);
    writeJson(writer, *value);
  } else {
    writer.key(name);
    writeJson(writer, value);
  }
}

template <class Record, template <class...> class List, class... Member>
constexpr auto memberWriters(List<Member...>) {
  return std::array<MemberWriter<Record>, sizeof...(Member)>{
      MemberWriter<Record>{Member::name, &writeField<Record, Member>}...};
}

template <class Record>
inline constexpr auto membersInOrder = memberWriters<Record>(MembersOf<Record>{});

template <class Record>
inline constexpr auto membersSorted = [] {
  auto members = membersInOrder<Record>;
  std::sort(members.begin(), members.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
  return members;
}();

}  // namespace detail

template <class Record>
requires DescribedRecord<Record>
void writeJson(JsonWriter& writer, const Record& record) {
  const auto& members =
      writer.format().sorted ? detail::membersSorted<Record> : detail::membersInOrder<Record>;
  writer.beginObject();
  for (const auto& member : members) member.write(writer, member.name, record);
  writer.endObject();
}

inline void writeJson(JsonWriter& writer, const JSONValue& value) {
  struct Visitor {
    JsonWriter& writer;
    void operator()(std::monostate) const { writer.null(); }
    void operator()(std::int64_t number) const { writer.integer(number); }
    void operator()(const JSONArray& elements) const { writeJson(writer, elements); }
    void operator()(const JSONObject& members) const { writeJson(writer, members); }
    void operator()(bool boolean) const { writer.boolean(boolean); }
    void operator()(double number) const { writer.number(number); }
    void operator()(const std::string& text) const { writer.string(text); }
  };
  std::visit(Visitor{writer}, value.storage);
}

/// Writes a member of the object that the caller has begun.
inline void writeMember(JsonWriter& writer, std::string_view name, std::string_view value) {
  writer.key(name);
  writer.string(value);
}

template <class Value>
requires(!std::is_convertible_v<Value, std::string_view>) void writeMember(JsonWriter& writer,
                                                                           std::string_view name,
                                                                           const Value& value) {
  writer.key(name);
  writeJson(writer, value);
}

/// A record whose keys are sorted at every depth, whatever the format says of keys: the text is that of a
/// JSONValue with the same content. Lives no longer than the record.
template <class Record>
struct KeysSorted {
  const Record* record = nullptr;
};

template <class Record>
void writeJson(JsonWriter& writer, KeysSorted<Record> sorted) {
  const bool before = writer.format().sorted;
  writer.setSorted(true);
  writeJson(writer, *sorted.record);
  writer.setSorted(before);
}

/// `value` as JSON text. Throws JsonEncodeError.
template <class T>
std::string encodeJson(const T& value, JsonFormat format = JsonFormat::wire) {
  JsonWriter writer(format);
  writeJson(writer, value);
  return writer.take();
}

}  // namespace velmora
