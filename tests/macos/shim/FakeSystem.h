// A system that answers what the test put here and notes what it was asked. The interfaces are those of
// tests/macos/declarations; Foundation is GNUstep's.
#pragma once

#import <Foundation/Foundation.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

struct FakeSystem {
  std::vector<std::string> done{};  ///< In order, in words.

  std::set<std::string> running{};    ///< Bundle identifiers.
  int misses = 0;                     ///< How often from now on what runs is not seen.
  std::set<std::string> installed{};  ///< Bundle identifiers.
  bool opensAddresses = true;
  bool isTrusted = false;
  std::map<std::string, bool> trustOptions{};
  int consent = 0;
  int loginStatus = 0;
  bool changesLogin = true;
  std::vector<std::pair<int, int>> windows{};  ///< Number and layer, from front to back.
  bool hasWindowServer = true;
  int listsKept = 0;  ///< Lists that were handed over and not given back.
};

extern FakeSystem fakeSystem;
