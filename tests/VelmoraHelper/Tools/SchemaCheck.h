// As much of JSON Schema as the tools' schemas use; a keyword that it does not know is a failure.
#pragma once

#include <regex.h>

#include <algorithm>
#include <boost/json/value.hpp>
#include <cmath>
#include <stdexcept>
#include <string>

namespace velmora::testing {

namespace detail {

inline bool hasType(const boost::json::value& value, std::string_view type) {
  if (type == "object") return value.is_object();
  if (type == "array") return value.is_array();
  if (type == "string") return value.is_string();
  if (type == "boolean") return value.is_bool();
  if (type == "integer") {
    return value.is_int64() || (value.is_double() && value.get_double() == std::trunc(value.get_double()));
  }
  throw std::logic_error("schema type " + std::string(type));
}

inline bool contains(const boost::json::array& values, const boost::json::value& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

// The pattern is read as a POSIX extended one, which for what the schemas use is the same.
inline bool matches(const std::string& text, const std::string& pattern) {
  regex_t expression;
  if (::regcomp(&expression, pattern.c_str(), REG_EXTENDED | REG_NOSUB) != 0) {
    throw std::logic_error("schema pattern " + pattern);
  }
  const bool found = ::regexec(&expression, text.c_str(), 0, nullptr, 0) == 0;
  ::regfree(&expression);
  return found;
}

}  // namespace detail

bool schemaAccepts(const boost::json::object& schema, const boost::json::value& value);

namespace detail {

inline bool keywordAccepts(std::string_view keyword, const boost::json::value& rule,
                           const boost::json::object& schema, const boost::json::value& value) {
  if (keyword == "type") return hasType(value, std::string(rule.as_string()));
  if (keyword == "enum") return contains(rule.as_array(), value);
  if (keyword == "minimum")
    return !value.is_number() || value.to_number<double>() >= rule.to_number<double>();
  if (keyword == "maximum")
    return !value.is_number() || value.to_number<double>() <= rule.to_number<double>();
  if (keyword == "minLength") {
    return !value.is_string() || value.as_string().size() >= rule.to_number<std::size_t>();
  }
  if (keyword == "pattern") {
    return !value.is_string() || matches(std::string(value.as_string()), std::string(rule.as_string()));
  }
  if (keyword == "required") {
    for (const auto& name : rule.as_array()) {
      if (value.is_object() && !value.as_object().contains(name.as_string())) return false;
    }
    return true;
  }
  if (keyword == "properties") {
    for (const auto& property : rule.as_object()) {
      const auto* member = value.is_object() ? value.as_object().if_contains(property.key()) : nullptr;
      if (member != nullptr && !schemaAccepts(property.value().as_object(), *member)) return false;
    }
    return true;
  }
  if (keyword == "items") {
    const auto fits = [&](const auto& element) { return schemaAccepts(rule.as_object(), element); };
    return !value.is_array() || std::all_of(value.as_array().begin(), value.as_array().end(), fits);
  }
  if (keyword == "additionalProperties") {
    if (rule.as_bool() || !value.is_object()) return true;
    const auto* properties = schema.if_contains("properties");
    for (const auto& member : value.as_object()) {
      if (properties == nullptr || !properties->as_object().contains(member.key())) return false;
    }
    return true;
  }
  if (keyword == "default" || keyword == "description" || keyword == "format") return true;
  throw std::logic_error("schema keyword " + std::string(keyword));
}

}  // namespace detail

/// Whether `value` fits `schema`. Throws std::logic_error for a keyword or type outside the subset.
inline bool schemaAccepts(const boost::json::object& schema, const boost::json::value& value) {
  for (const auto& keyword : schema) {
    if (!detail::keywordAccepts(std::string(keyword.key()), keyword.value(), schema, value)) return false;
  }
  return true;
}

}  // namespace velmora::testing
