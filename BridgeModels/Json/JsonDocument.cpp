// Builds the document from Boost.JSON's parsing events. The library's own parser rounds some numbers wrongly
// (before its release 1.84 it has no exact mode), and dates must survive a round trip to the last bit: a
// number that is no integer is read again here from its text.
#include "BridgeModels/Json/JsonDocument.h"

#include <locale.h>
#include <stdlib.h>
#if __has_include(<xlocale.h>)
#include <xlocale.h>
#endif

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/value_stack.hpp>
#include <cmath>
#include <string>
#include <utility>

namespace velmora {

namespace {

using boost::json::string_view;
using boost::system::error_code;

constexpr std::size_t maximumDepth = 128;

// `text` is a number as JSON writes it, whatever the process's locale says of decimal points.
double exactDouble(const std::string& text) {
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(text.c_str(), nullptr, plain);
}

// What basic_parser calls; the names are its own. Every event goes on to the stack that builds the value.
// NOLINTBEGIN(readability-identifier-naming)
class DocumentBuilder {
 public:
  static constexpr std::size_t max_object_size = boost::json::object::max_size();
  static constexpr std::size_t max_array_size = boost::json::array::max_size();
  static constexpr std::size_t max_key_size = boost::json::string::max_size();
  static constexpr std::size_t max_string_size = boost::json::string::max_size();

  explicit DocumentBuilder(boost::json::storage_ptr memory) { stack_.reset(std::move(memory)); }

  boost::json::value release() { return stack_.release(); }

  bool on_document_begin(error_code&) { return true; }
  bool on_document_end(error_code&) { return true; }
  bool on_object_begin(error_code&) { return true; }
  bool on_object_end(std::size_t size, error_code&) { return stack_.push_object(size), true; }
  bool on_array_begin(error_code&) { return true; }
  bool on_array_end(std::size_t size, error_code&) { return stack_.push_array(size), true; }
  bool on_key_part(string_view part, std::size_t, error_code&) { return stack_.push_chars(part), true; }
  bool on_key(string_view part, std::size_t, error_code&) { return stack_.push_key(part), true; }
  bool on_string_part(string_view part, std::size_t, error_code&) { return stack_.push_chars(part), true; }
  bool on_string(string_view part, std::size_t, error_code&) { return stack_.push_string(part), true; }
  bool on_number_part(string_view part, error_code&) {
    number_.append(part.data(), part.size());
    return true;
  }
  bool on_int64(std::int64_t value, string_view, error_code&) {
    number_.clear();
    stack_.push_int64(value);
    return true;
  }
  bool on_uint64(std::uint64_t value, string_view, error_code&) {
    number_.clear();
    stack_.push_uint64(value);
    return true;
  }
  bool on_double(double, string_view part, error_code& error) {
    number_.append(part.data(), part.size());
    const double value = exactDouble(number_);
    number_.clear();
    if (!std::isfinite(value)) {
      error = boost::json::error::exponent_overflow;
      return false;
    }
    stack_.push_double(value);
    return true;
  }
  bool on_bool(bool value, error_code&) { return stack_.push_bool(value), true; }
  bool on_null(error_code&) { return stack_.push_null(), true; }
  bool on_comment_part(string_view, error_code&) { return true; }
  bool on_comment(string_view, error_code&) { return true; }

 private:
  boost::json::value_stack stack_;
  std::string number_;  // the parts of the number that is being read
};
// NOLINTEND(readability-identifier-naming)

}  // namespace

boost::json::value parseJson(std::string_view text, boost::json::storage_ptr memory) {
  boost::json::parse_options options;
  options.max_depth = maximumDepth;
  boost::json::basic_parser<DocumentBuilder> parser(options, std::move(memory));
  error_code error;
  const auto read = parser.write_some(/*more=*/false, text.data(), text.size(), error);
  if (!error && read < text.size()) error = boost::json::error::extra_data;
  if (error) throw JsonDecodeError("no valid JSON: " + error.message());
  return parser.handler().release();
}

}  // namespace velmora
