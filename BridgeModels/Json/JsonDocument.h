// Parses JSON text into a document, a tree that JsonReader reads values from.
#pragma once

#include <array>
#include <boost/json/monotonic_resource.hpp>
#include <boost/json/value.hpp>
#include <stdexcept>
#include <string_view>

namespace velmora {

/// Text that is no JSON, or JSON that does not fit the record. `what()` names the path, for logs and tests:
/// `arguments.key: unknown value "Escape"`.
class JsonDecodeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The document that `text` holds. Nesting deeper than 128 levels, ill-formed UTF-8 and numbers too large for
/// a double are refused; of a key that stands twice the last one counts. The document's memory comes from
/// `memory`. Throws JsonDecodeError.
boost::json::value parseJson(std::string_view text, boost::json::storage_ptr memory = {});

/// What `use` returns when it is called with the document that `text` holds; the document lives no longer
/// than the call. Throws JsonDecodeError.
template <class Use>
auto withJson(std::string_view text, const Use& use) {
  // One growing piece of memory that is dropped at once spares an allocation for each of the document's
  // values, and most messages fit the stack.
  std::array<unsigned char, 4096> firstPiece;
  boost::json::monotonic_resource memory(firstPiece.data(), firstPiece.size());
  const auto document = parseJson(text, &memory);
  return use(document);
}

}  // namespace velmora
