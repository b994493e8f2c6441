#include "VelmoraHelper/Tools/ArgumentCheck.h"

#include <algorithm>
#include <array>
#include <boost/json/serialize.hpp>
#include <cctype>
#include <string_view>
#include <vector>

#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/Tools.h"
#include "System/Utf8.h"
#include "VelmoraHelper/Tools/NearestName.h"
#include "VelmoraHelper/Tools/ToolSchemas.h"

namespace velmora {

namespace {

using Names = std::vector<std::string_view>;

// In lower case, letters and digits only: "Ctrl-C" and "ctrl+c" are the same guess.
std::string plainGuess(std::string_view text) {
  std::string plain;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (std::isalnum(byte) != 0) plain.push_back(static_cast<char>(std::tolower(byte)));
  }
  return plain;
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string shown(const boost::json::value& value) {
  constexpr std::size_t mostBytes = 60;
  const auto text = boost::json::serialize(value);
  const auto beginning = firstBytes(text, mostBytes);
  return beginning.size() < text.size() ? std::string(beginning) + "..." : text;
}

// The letter of a guess like "ctrl-c", "Control+C", "C-c" or "^C".
std::optional<char> controlLetter(std::string_view guess) {
  const auto plain = plainGuess(guess);
  const bool isShort = (guess.starts_with('^') && plain.size() == 1) ||
                       ((guess.starts_with("C-") || guess.starts_with("c-")) && plain.size() == 2);
  if (plain.empty() || std::isalpha(static_cast<unsigned char>(plain.back())) == 0) return std::nullopt;
  if (isShort || plain == std::string("ctrl") + plain.back() ||
      plain == std::string("control") + plain.back())
    return plain.back();
  return std::nullopt;
}

std::string controlCharacterHint(char letter) {
  constexpr std::string_view digits = "0123456789abcdef";
  const auto code = static_cast<unsigned>(letter - 'a' + 1);
  const auto upper = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  return std::string("for Ctrl-") + upper + " send the text \"\\u00" + digits[code >> 4] + digits[code & 15] +
         "\" with terminal_send_command";
}

// What agents and people call a key elsewhere.
struct OtherKeyName {
  std::string_view name;
  TerminalKey key;
};

constexpr auto otherKeyNames = std::to_array<OtherKeyName>({
    {"enter", TerminalKey::return_},     {"cr", TerminalKey::return_},
    {"newline", TerminalKey::return_},   {"esc", TerminalKey::escape},
    {"backspace", TerminalKey::delete_}, {"bs", TerminalKey::delete_},
    {"bspace", TerminalKey::delete_},    {"del", TerminalKey::forwardDelete},
    {"up", TerminalKey::upArrow},        {"arrowup", TerminalKey::upArrow},
    {"down", TerminalKey::downArrow},    {"arrowdown", TerminalKey::downArrow},
    {"left", TerminalKey::leftArrow},    {"arrowleft", TerminalKey::leftArrow},
    {"right", TerminalKey::rightArrow},  {"arrowright", TerminalKey::rightArrow},
    {"pgup", TerminalKey::pageUp},       {"ppage", TerminalKey::pageUp},
    {"pgdn", TerminalKey::pageDown},     {"pgdown", TerminalKey::pageDown},
    {"npage", TerminalKey::pageDown},
});

std::string keyHint(std::string_view guess, ToolForm form) {
  const auto plain = plainGuess(guess);
  if (form == ToolForm::extended && plain == "backspace") return didYouMean("backspace");
  if (const auto letter = controlLetter(guess)) {
    const auto name = "control" + std::string(1, static_cast<char>(std::toupper(*letter)));
    if (form == ToolForm::extended && fromWireName<TerminalKey>(name)) return didYouMean(name);
    return "; " + controlCharacterHint(*letter);
  }
  for (const auto& other : otherKeyNames) {
    if (plain == other.name) return didYouMean(wireName(other.key));
  }
  if (guess.size() == 1 || plain == "space") return "; for text use terminal_send_command";
  return {};
}

template <class Enum>
std::string enumFault(std::string_view name, const boost::json::value& value, ToolForm form) {
  const Names cases = namesOf<Enum>(form);
  std::string list;
  for (const auto each : cases) list += (list.empty() ? "" : ", ") + std::string(each);
  auto fault = std::string(name) + ": " + shown(value) + " is none of " + list;
  if (!value.is_string()) return fault + ".";
  const std::string_view guess = value.get_string();
  if constexpr (std::is_same_v<Enum, TerminalKey>) {
    if (const auto hint = keyHint(guess, form); !hint.empty())
      return fault + hint + (hint.back() == '?' ? "" : ".");
  }
  const auto same = std::find_if(cases.begin(), cases.end(),
                                 [&](auto entry) { return plainGuess(entry) == plainGuess(guess); });
  const auto meant = same != cases.end() ? std::optional(*same) : nearestName(guess, cases);
  return fault + (meant ? didYouMean(meant) : ".");
}

// What the value should have been.
template <class Value>
std::string typeFault(std::string_view name, const boost::json::value& value,
                      [[maybe_unused]] ToolForm form) {
  if constexpr (std::is_enum_v<Value>) return enumFault<Value>(name, value, form);
  std::string_view type = "a string";
  if constexpr (std::is_same_v<Value, bool>) type = "true or false";
  if constexpr (std::is_integral_v<Value> && !std::is_same_v<Value, bool>) type = "an integer";
  if constexpr (std::is_same_v<Value, Uuid>) type = "a UUID";
  auto fault = std::string(name) + ": " + shown(value) + " is not " + std::string(type) + ".";
  if (value.is_string() && !std::is_same_v<Value, Uuid>) return fault + " Leave out the quotes.";
  return fault + " It is: " + std::string(fieldRule(name).description);
}

template <class Value>
bool isReadable(const boost::json::value& value, [[maybe_unused]] ToolForm form) {
  try {
    Value read{};
    JsonReader(value).read(read);
    if constexpr (std::is_same_v<Value, TerminalKey>) return form == ToolForm::extended || !isExtended(read);
    return true;
  } catch (const JsonDecodeError&) {
    return false;
  }
}

// An argument that the tool does not have and whose name is like `name`.
std::string misspelling(std::string_view name, const Names& known, const boost::json::object& arguments) {
  for (const auto& argument : arguments) {
    const std::string_view given = argument.key();
    if (std::find(known.begin(), known.end(), given) != known.end()) continue;
    const std::array meant{name};
    if (plainGuess(given) == plainGuess(name) || nearestName(given, meant)) {
      return " You gave " + quoted(std::string(given)) + ", which this tool does not have.";
    }
  }
  return {};
}

template <class Input, class Member>
std::optional<std::string> memberFault(const Names& known, const boost::json::object& arguments,
                                       ToolForm form) {
  if (!isOffered<Input>(Member::pointer, form)) return std::nullopt;
  using Value = ValueOf<detail::FieldOf<Input, Member>>;
  const std::string_view name = Member::name;
  const auto* value = arguments.if_contains(name);
  if (value != nullptr && !value->is_null()) {
    return isReadable<Value>(*value, form) ? std::nullopt
                                           : std::optional(typeFault<Value>(name, *value, form));
  }
  if (!detail::isRequired<Input, Member>()) return std::nullopt;
  const auto given = misspelling(name, known, arguments);
  const auto about = given.empty() ? " It is: " + std::string(fieldRule(name).description) : given;
  return std::string(name) + " is missing." + about;
}

template <class Input, template <class...> class List, class... Member>
std::optional<std::string> inputFault(List<Member...>, const boost::json::object& arguments,
                                      [[maybe_unused]] ToolForm form) {
  const Names known{Member::name...};
  std::optional<std::string> fault;
  static_cast<void>(((fault = memberFault<Input, Member>(known, arguments, form)).has_value() || ...));
  return fault;
}

bool isGiven(std::string_view name, const boost::json::object& arguments) {
  const auto* value = arguments.if_contains(name);
  return value != nullptr && !value->is_null();
}

template <class Input, template <class...> class List, class... Member>
bool givesExtended(List<Member...>, [[maybe_unused]] const boost::json::object& arguments) {
  return ((isExtended(Member::pointer) && isGiven(Member::name, arguments)) || ...);
}

}  // namespace

bool usesExtendedForm(ToolName tool, const boost::json::object& arguments) {
  if (tool == ToolName::sendKey) {
    const auto* key = arguments.if_contains("key");
    const auto named =
        key != nullptr && key->is_string() ? fromWireName<TerminalKey>(key->get_string()) : std::nullopt;
    if (named && isExtended(*named)) return true;
  }
  return visitTool(tool, [&]<class Tool>(const Tool&) {
    return givesExtended<typename Tool::Input>(MembersOf<typename Tool::Input>{}, arguments);
  });
}

std::optional<std::string> argumentFault(ToolName tool, const boost::json::object& arguments, ToolForm form) {
  return visitTool(tool, [&]<class Tool>(const Tool&) {
    return inputFault<typename Tool::Input>(MembersOf<typename Tool::Input>{}, arguments, form);
  });
}

}  // namespace velmora
