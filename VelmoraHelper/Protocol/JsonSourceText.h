// Finds the source text of a part of a JSON document: a parsed number no longer says whether it was "1.50" or
// "1.5", and an id must be returned exactly as it was received.
#pragma once

#include <exception>
#include <string_view>
#include <vector>

namespace velmora {

/// The document does not have the expected shape.
class NoSuchText : public std::exception {};

/// The value of the last member `name` of an object, as the parser counts them; empty when there is none.
/// Only the brackets, quotes and separators are read; what stands between them need not be valid. The view
/// points into `document`. Throws NoSuchText unless the whole document is one object.
std::string_view lastMemberText(std::string_view document, std::string_view name);

/// The value of the first member `name` of an object of which only the beginning is there; empty when it
/// does not stand there whole.
std::string_view memberTextInBeginning(std::string_view beginning, std::string_view name);

/// The elements of an array, in their order, read in the same way.
std::vector<std::string_view> elementTexts(std::string_view document);

}  // namespace velmora
