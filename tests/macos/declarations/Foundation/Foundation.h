// What Velmora uses of Foundation, declared from public facts: names, arguments and values, no more. Only for
// checking the macOS files on other systems; checkDeclarations.py compares it with two public references. A
// build on a Mac uses Apple's own headers.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <objc/NSObject.h>
#import <os/availability.h>
#import <stdint.h>

typedef double NSTimeInterval;
typedef CGSize NSSize;
typedef uint32_t AEEventClass;
typedef uint32_t AEEventID;
typedef uint32_t AEKeyword;
typedef struct AEDesc AEDesc;
typedef int16_t AEReturnID;
typedef int32_t AETransactionID;
typedef unsigned char Boolean;

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

typedef NS_ENUM(NSUInteger, NSStringEncoding) { NSUTF8StringEncoding = 4 };

typedef struct {
  unsigned long state;
  id __unsafe_unretained* itemsPtr;
  unsigned long* mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSCopying
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len;
@end

@interface NSData : NSObject
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
- (const void*)bytes;
- (NSUInteger)length;
@end

@interface NSString : NSObject <NSCopying>
- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSString*)lowercaseString;
- (const char*)fileSystemRepresentation;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithBool:(BOOL)value;
- (long long)longLongValue;
@end

@interface NSArray<ObjectType> : NSObject <NSFastEnumeration>
- (NSUInteger)count;
@end

@interface NSDictionary<KeyType, ObjectType> : NSObject
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)cnt;
- (ObjectType)objectForKey:(KeyType)aKey;
@end

@interface NSDate : NSObject
- (NSTimeInterval)timeIntervalSinceReferenceDate;
@end

@interface NSURL : NSObject
+ (instancetype)URLWithString:(NSString*)URLString;
@end

@interface NSError : NSObject
@end

@interface NSLocale : NSObject
+ (NSArray<NSString*>*)preferredLanguages;
@end

@interface NSBundle : NSObject
+ (NSBundle*)mainBundle;
+ (NSBundle*)bundleForClass:(Class)aClass;
- (NSString*)resourcePath;
- (NSString*)bundlePath;
@end

@interface NSUserDefaults : NSObject
+ (NSUserDefaults*)standardUserDefaults;
- (id)objectForKey:(NSString*)defaultName;
- (NSString*)stringForKey:(NSString*)defaultName;
- (BOOL)boolForKey:(NSString*)defaultName;
- (void)setBool:(BOOL)value forKey:(NSString*)defaultName;
- (void)setObject:(id)value forKey:(NSString*)defaultName;
@end

typedef NS_ENUM(uint64_t, NSActivityOptions) {
  NSActivityUserInitiatedAllowingIdleSystemSleep = 15728639
} API_AVAILABLE(macos(10.9));

@interface NSProcessInfo : NSObject
+ (NSProcessInfo*)processInfo;
- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason API_AVAILABLE(macos(10.9));
@end

@interface NSNotification : NSObject
- (id)object;
@end

@interface NSNotificationCenter : NSObject
+ (NSNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer selector:(SEL)aSelector name:(NSString*)aName object:(id)anObject;
@end

@interface NSFileHandle : NSObject
+ (NSFileHandle*)fileHandleWithStandardInput;
- (void)waitForDataInBackgroundAndNotify;
@end

@interface NSAppleEventDescriptor : NSObject
+ (NSAppleEventDescriptor*)descriptorWithBundleIdentifier:(NSString*)bundleIdentifier
    API_AVAILABLE(macos(10.11));
- (const AEDesc*)aeDesc;
+ (NSAppleEventDescriptor*)descriptorWithString:(NSString*)string;
+ (NSAppleEventDescriptor*)descriptorWithInt32:(int32_t)signedInt;
+ (NSAppleEventDescriptor*)descriptorWithBoolean:(Boolean)boolean;
+ (NSAppleEventDescriptor*)listDescriptor;
+ (NSAppleEventDescriptor*)appleEventWithEventClass:(AEEventClass)eventClass
                                            eventID:(AEEventID)eventID
                                   targetDescriptor:(NSAppleEventDescriptor*)targetDescriptor
                                           returnID:(AEReturnID)returnID
                                      transactionID:(AETransactionID)transactionID;
- (void)setParamDescriptor:(NSAppleEventDescriptor*)descriptor forKeyword:(AEKeyword)keyword;
- (void)insertDescriptor:(NSAppleEventDescriptor*)descriptor atIndex:(NSInteger)index;
- (NSAppleEventDescriptor*)descriptorAtIndex:(NSInteger)index;
- (NSInteger)numberOfItems;
- (NSString*)stringValue;
- (int32_t)int32Value;
- (Boolean)booleanValue;
@end

@interface NSAppleScript : NSObject
- (instancetype)initWithSource:(NSString*)source;
- (BOOL)compileAndReturnError:(NSDictionary<NSString*, id>**)errorInfo;
- (NSAppleEventDescriptor*)executeAppleEvent:(NSAppleEventDescriptor*)event
                                       error:(NSDictionary<NSString*, id>**)errorInfo;
@end

#ifdef __cplusplus
extern "C" {
#endif
extern NSString* const NSAppleScriptErrorNumber;
extern NSString* const NSFileHandleDataAvailableNotification;
Class NSClassFromString(NSString* aClassName);
#ifdef __cplusplus
}
#endif
