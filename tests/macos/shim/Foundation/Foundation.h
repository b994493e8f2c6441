// GNUstep's Foundation, with fakes in the place of the two AppleScript classes, which are empty there. So the
// shims of macOS run on Linux.
#pragma once

#include_next <Foundation/Foundation.h>
#include <os/availability.h>

// GCC's runtime makes them numbers, which have no literal such as @YES.
#undef YES
#undef NO
#define YES __objc_yes
#define NO __objc_no

typedef struct AEDesc AEDesc;
typedef uint32_t AEEventClass;
typedef uint32_t AEEventID;
typedef uint32_t AEKeyword;
enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

/// A descriptor that holds an object, a list, or the parameters of an event, and reads them as the system
/// does.
@interface FakeDescriptor : NSObject {
 @public
  id value;  // NSString, NSNumber (an integer), or nil: missing
  BOOL isBoolean;
  NSMutableArray* items;
  NSMutableDictionary* parameters;
  unsigned eventClass, eventID;
  int returnID, transactionID;
  id target;
}
+ (FakeDescriptor*)descriptorWithString:(NSString*)string;
+ (FakeDescriptor*)descriptorWithInt32:(int32_t)integer;
+ (FakeDescriptor*)descriptorWithBoolean:(unsigned char)boolean;
+ (FakeDescriptor*)listDescriptor;
/// Its value is the identifier, which the system would not say.
+ (FakeDescriptor*)descriptorWithBundleIdentifier:(NSString*)identifier;
- (const AEDesc*)aeDesc;
+ (FakeDescriptor*)appleEventWithEventClass:(AEEventClass)aClass
                                    eventID:(AEEventID)anID
                           targetDescriptor:(FakeDescriptor*)aTarget
                                   returnID:(int16_t)aReturnID
                              transactionID:(int32_t)aTransactionID;
- (void)setParamDescriptor:(FakeDescriptor*)descriptor forKeyword:(AEKeyword)keyword;
- (FakeDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword;
- (void)insertDescriptor:(FakeDescriptor*)descriptor atIndex:(NSInteger)index;
- (FakeDescriptor*)descriptorAtIndex:(NSInteger)index;
- (NSInteger)numberOfItems;
- (NSString*)stringValue;
- (int32_t)int32Value;
- (unsigned char)booleanValue;
@end

/// A script that remembers what it was given and answers what the test put here.
@interface FakeScript : NSObject
- (id)initWithSource:(NSString*)source;
- (BOOL)compileAndReturnError:(NSDictionary**)error;
- (FakeDescriptor*)executeAppleEvent:(FakeDescriptor*)event error:(NSDictionary**)error;
@end

/// GNUstep's would be content with anything.
@interface FakeProcessInfo : NSObject
+ (FakeProcessInfo*)processInfo;
- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
@end

extern NSString* fakeSource;
extern BOOL fakeCompiles;
extern FakeDescriptor* fakeEvent;
extern FakeDescriptor* fakeReply;
extern NSDictionary* fakeError;

#define NSAppleEventDescriptor FakeDescriptor
#define NSAppleScript FakeScript
#define NSProcessInfo FakeProcessInfo
#define NSAppleScriptErrorNumber @"NSAppleScriptErrorNumber"
