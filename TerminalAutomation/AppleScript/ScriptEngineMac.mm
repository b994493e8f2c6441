#import <Foundation/Foundation.h>

#include "MacPlatform/FoundationText.hh"
#include "MacPlatform/Permissions.h"
#include "TerminalAutomation/AppleScript/ScriptHost.h"

namespace velmora {

namespace {

using mac::stringOf;
using mac::textOf;

// AppleScript's own codes; their names live in Carbon, which is not needed for anything else.
constexpr AEEventClass appleScriptSuite = 'ascr';  // kASAppleScriptSuite
constexpr AEEventID subroutineEvent = 'psbr';      // kASSubroutineEvent
constexpr AEKeyword subroutineName = 'snam';       // keyASSubroutineName
constexpr AEKeyword directObject = '----';         // keyDirectObject

struct ArgumentConversion {
  NSAppleEventDescriptor* operator()(const std::string& text) const {
    return [NSAppleEventDescriptor descriptorWithString:stringOf(text)];
  }
  NSAppleEventDescriptor* operator()(std::int32_t integer) const {
    return [NSAppleEventDescriptor descriptorWithInt32:integer];
  }
  NSAppleEventDescriptor* operator()(bool boolean) const {
    return [NSAppleEventDescriptor descriptorWithBoolean:boolean];
  }
};

NSAppleEventDescriptor* listOf(const std::vector<ScriptArgument>& arguments) {
  NSAppleEventDescriptor* const list = [NSAppleEventDescriptor listDescriptor];
  NSInteger position = 0;
  for (const auto& argument : arguments) {
    [list insertDescriptor:std::visit(ArgumentConversion(), argument) atIndex:++position];
  }
  return list;
}

ScriptDescriptor descriptorOf(NSAppleEventDescriptor* value) {
  ScriptDescriptor result{.text = textOf([value stringValue]),
                          .integer = [value int32Value],
                          .boolean = static_cast<bool>([value booleanValue])};
  const NSInteger count = [value numberOfItems];
  for (NSInteger position = 1; position <= count; ++position) {
    result.items.push_back(descriptorOf([value descriptorAtIndex:position]));
  }
  return result;
}

ScriptFailure failureOf(NSDictionary* error) {
  const id number = [error objectForKey:NSAppleScriptErrorNumber];
  if (![number isKindOfClass:[NSNumber class]]) return {};
  return {.number = [number longLongValue]};
}

class AppleScriptEngine final : public ScriptEngine {
 public:
  bool compile(const std::string& source) override {
    @autoreleasepool {
      script_ = [[NSAppleScript alloc] initWithSource:stringOf(source)];
      NSDictionary* ignored = nil;
      return [script_ compileAndReturnError:&ignored];
    }
  }

  ScriptReply call(const std::string& handler, const std::vector<ScriptArgument>& arguments) override {
    @autoreleasepool {
      NSAppleEventDescriptor* const event =
          [NSAppleEventDescriptor appleEventWithEventClass:appleScriptSuite
                                                   eventID:subroutineEvent
                                          targetDescriptor:nil
                                                  returnID:kAutoGenerateReturnID
                                             transactionID:kAnyTransactionID];
      // A compiled script knows its handlers in lower case.
      NSString* const name = [stringOf(handler) lowercaseString];
      [event setParamDescriptor:[NSAppleEventDescriptor descriptorWithString:name] forKeyword:subroutineName];
      [event setParamDescriptor:listOf(arguments) forKeyword:directObject];
      NSDictionary* error = nil;
      NSAppleEventDescriptor* const reply = [script_ executeAppleEvent:event error:&error];
      if (reply == nil) return failureOf(error);
      return descriptorOf(reply);
    }
  }

  std::int32_t consent(const std::string& bundleIdentifier, bool asksUser) override {
    return mac::automationConsent(bundleIdentifier, asksUser);
  }

 private:
  NSAppleScript* script_ = nil;
};

}  // namespace

std::unique_ptr<ScriptEngine> systemScriptEngine() { return std::make_unique<AppleScriptEngine>(); }

}  // namespace velmora
