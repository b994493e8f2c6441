// The JSON Schemas of a tool's input and of its structured content, made from the same record descriptions
// that the decoder and the encoder walk, so that what is advertised, accepted and answered cannot drift
// apart. Texts and ranges, which a description does not hold, come from a table of fields.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

#include "BridgeModels/ToolInputs.h"
#include "BridgeModels/ToolPayloads.h"
#include "VelmoraHelper/Tools/JsonSchema.h"

namespace velmora {

/// What a schema says about a field besides its type. A field means the same in every input that has it.
struct FieldRule {
  std::string_view field;
  std::string_view description;
  std::optional<IntegerRange> range{};
  std::optional<std::int64_t> minimumLength{};
};

/// The rule of `field`. Throws std::logic_error for a field that has none.
const FieldRule& fieldRule(std::string_view field);

namespace detail {

template <class Input, class Member>
void writeField(JsonWriter& writer, ToolForm form) {
  using Field = FieldOf<Input, Member>;
  if (!isOffered<Input>(Member::pointer, form)) return;
  const auto& rule = fieldRule(Member::name);
  writer.key(Member::name);
  writer.beginObject();
  writeSchemaType<ValueOf<Field>>(writer, form);
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
  using Field = FieldOf<Input, Member>;
  return !takesDefault<Input>(Member::pointer) && !isOptional<Field>;
}

template <class Input, template <class...> class List, class... Member>
void writeFields(JsonWriter& writer, ToolForm form, List<Member...>) {
  if constexpr (sizeof...(Member) > 0) {
    writer.key("properties");
    writer.beginObject();
    (writeField<Input, Member>(writer, form), ...);
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

/// The schema of the arguments.
template <class Input>
void writeInputSchema(JsonWriter& writer, ToolForm form = ToolForm::plain) {
  writer.beginObject();
  writeMember(writer, "type", "object");
  detail::writeFields<Input>(writer, form, MembersOf<Input>{});
  writeMember(writer, "additionalProperties", false);
  writer.endObject();
}

/// The schema of the structured content: the envelope with the tool's payload. Failures have the same shape
/// without the payload, because clients check them against the schema too.
template <class Payload>
void writeOutputSchema(JsonWriter& writer, ToolForm form = ToolForm::plain) {
  writer.beginObject();
  writeRecordSchema<ToolResult<Payload>>(writer, form);
  writer.endObject();
}

}  // namespace velmora
