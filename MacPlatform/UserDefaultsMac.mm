#import <Foundation/Foundation.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/UserDefaults.h"

namespace velmora::mac {

std::optional<bool> boolDefault(const std::string& key) {
  @autoreleasepool {
    NSUserDefaults* const defaults = [NSUserDefaults standardUserDefaults];
    NSString* const name = stringOf(key);
    if ([defaults objectForKey:name] == nil) return std::nullopt;
    return static_cast<bool>([defaults boolForKey:name]);
  }
}

std::optional<std::string> textDefault(const std::string& key) {
  @autoreleasepool {
    NSString* const text = [[NSUserDefaults standardUserDefaults] stringForKey:stringOf(key)];
    if (text == nil) return std::nullopt;
    return textOf(text);
  }
}

void setBoolDefault(const std::string& key, bool value) {
  @autoreleasepool {
    [[NSUserDefaults standardUserDefaults] setBool:value forKey:stringOf(key)];
  }
}

void setTextDefault(const std::string& key, const std::string& value) {
  @autoreleasepool {
    [[NSUserDefaults standardUserDefaults] setObject:stringOf(value) forKey:stringOf(key)];
  }
}

}  // namespace velmora::mac
