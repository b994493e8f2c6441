// What can be wrong with a frame.
#pragma once

#include <cstddef>
#include <exception>
#include <functional>

namespace velmora {

/// A value, thrown as such and compared with its cases: `error == LocalControlCodecError::emptyFrame`.
class LocalControlCodecError : public std::exception {
 public:
  enum Case {
    emptyFrame,     ///< The declared length is 0, or a record encoded to nothing.
    frameTooLarge,  ///< The payload is longer than LocalControlCodec::maximumPayloadSize.
    invalidFrame,   ///< No whole header, a length that does not match, or a payload that is not UTF-8.
  };

  LocalControlCodecError(Case which) noexcept : case_(which) {}  // NOLINT(google-explicit-constructor)

  Case kind() const noexcept { return case_; }

  /// The case's name, for logs.
  const char* what() const noexcept override {
    switch (case_) {
      case emptyFrame:
        return "emptyFrame";
      case frameTooLarge:
        return "frameTooLarge";
      case invalidFrame:
        return "invalidFrame";
    }
    return "";
  }

  friend bool operator==(const LocalControlCodecError& a, const LocalControlCodecError& b) noexcept {
    return a.case_ == b.case_;
  }

 private:
  Case case_;
};

}  // namespace velmora

template <>
struct std::hash<velmora::LocalControlCodecError> {
  std::size_t operator()(const velmora::LocalControlCodecError& error) const noexcept {
    return std::hash<int>{}(error.kind());
  }
};
