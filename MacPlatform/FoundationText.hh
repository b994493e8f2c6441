// Texts on their way to Foundation and back. For Objective-C++ only.
#pragma once

#import <Foundation/Foundation.h>

#include <filesystem>
#include <string>

namespace velmora::mac {

/// `text` must be UTF-8.
inline NSString* stringOf(const std::string& text) {
  return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

/// Nothing for nil. Halves of surrogate pairs, which UTF-8 has no place for, are replaced.
inline std::string textOf(NSString* text) {
  NSData* const bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
  return {static_cast<const char*>([bytes bytes]), [bytes length]};
}

/// Empty for nil.
inline std::filesystem::path pathOf(NSString* path) {
  const char* const bytes = [path fileSystemRepresentation];
  return bytes == nullptr ? "" : bytes;
}

}  // namespace velmora::mac
