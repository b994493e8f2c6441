// The languages that the person reads.
#pragma once

#include <string>
#include <vector>

namespace velmora::mac {

/// Language tags (BCP 47, such as "ko-KR" or "zh-Hans-CN"), the most preferred one first. What the person
/// chose for this application alone counts in the application's own process only. Any thread.
std::vector<std::string> preferredLanguages();

}  // namespace velmora::mac
