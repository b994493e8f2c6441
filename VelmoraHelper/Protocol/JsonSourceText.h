// The text of a part of a JSON document, as it was written: a parsed number does not say whether it was
// "1.50" or "1.5", and an id is answered exactly as it was received.
#pragma once

#include <exception>
#include <string_view>
#include <vector>

namespace velmora {

/// The document has not the shape of what is looked for.
class NoSuchText : public std::exception {};

/// The value of the last member `name` of an object, as the parser counts them; empty when there is none.
/// Only the brackets, quotes and separators are read; what stands between them need not be valid. The view
/// points into `document`. Throws NoSuchText for what is no object from its first to its last character.
std::string_view lastMemberText(std::string_view document, std::string_view name);

/// The elements of an array, in their order, read in the same way.
std::vector<std::string_view> elementTexts(std::string_view document);

}  // namespace velmora
