#include "ClientSetup/Quoting.h"

namespace velmora {

std::string shellQuoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '!') {
      // An interactive shell takes it for its history, and a backslash before it would stay in the word.
      quoted += R"("'!'")";
      continue;
    }
    if (std::string_view("\"\\$`").find(character) != std::string_view::npos) quoted.push_back('\\');
    quoted.push_back(character);
  }
  return quoted + '"';
}

std::string shellWord(std::string_view text) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.:@=,";
  const bool isPlain = !text.empty() && text.find_first_not_of(plain) == std::string_view::npos;
  return isPlain ? std::string(text) : shellQuoted(text);
}

std::string tomlQuoted(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) {
      quoted.append("\\u00").append(1, digits[byte >> 4]).append(1, digits[byte & 0x0Fu]);
      continue;
    }
    if (character == '"' || character == '\\') quoted.push_back('\\');
    quoted.push_back(character);
  }
  return quoted + '"';
}

}  // namespace velmora
