#import <Foundation/Foundation.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/PreferredLanguages.h"

namespace velmora::mac {

std::vector<std::string> preferredLanguages() {
  @autoreleasepool {
    std::vector<std::string> languages;
    for (NSString* language in [NSLocale preferredLanguages]) languages.push_back(textOf(language));
    return languages;
  }
}

}  // namespace velmora::mac
