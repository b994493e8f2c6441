// Members put into the text of a JSON document and taken out of it, in the manner in which it is written.
// Stateless; any thread.
#pragma once

#include <string>
#include <string_view>

#include "ClientSetup/JsonTree.h"

namespace velmora {

/// `text` with this member of `object`, which is a node of `document`, the tree of `text`: replaced where it
/// stands, else behind the last one.
std::string withMember(std::string_view text, const JsonNode& document, const JsonNode& object,
                       std::string_view key, const JSONValue& value);

/// `text` without the object's member at `index`. Comments around it stay.
std::string withoutMember(std::string_view text, const JsonNode& object, std::size_t index);

/// A new file with this object.
std::string newDocument(const JSONValue& value);

}  // namespace velmora
