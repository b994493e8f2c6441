#import <Foundation/Foundation.h>

NSString* fakeSource = nil;
BOOL fakeCompiles = YES;
FakeDescriptor* fakeEvent = nil;
FakeDescriptor* fakeReply = nil;
NSDictionary* fakeError = nil;

@implementation FakeDescriptor

+ (FakeDescriptor*)descriptorWithString:(NSString*)string {
  FakeDescriptor* const result = [FakeDescriptor new];
  result->value = [string copy];
  return result;
}

+ (FakeDescriptor*)descriptorWithInt32:(int32_t)integer {
  FakeDescriptor* const result = [FakeDescriptor new];
  result->value = [[NSNumber numberWithInt:integer] retain];
  return result;
}

+ (FakeDescriptor*)descriptorWithBoolean:(unsigned char)boolean {
  FakeDescriptor* const result = [self descriptorWithInt32:boolean];
  result->isBoolean = YES;
  return result;
}

+ (FakeDescriptor*)listDescriptor {
  FakeDescriptor* const result = [FakeDescriptor new];
  result->items = [NSMutableArray new];
  return result;
}

+ (FakeDescriptor*)descriptorWithBundleIdentifier:(NSString*)identifier {
  return [self descriptorWithString:identifier];
}

- (const AEDesc*)aeDesc {
  return reinterpret_cast<const AEDesc*>(self);
}

+ (FakeDescriptor*)appleEventWithEventClass:(AEEventClass)aClass
                                    eventID:(AEEventID)anID
                           targetDescriptor:(FakeDescriptor*)aTarget
                                   returnID:(int16_t)aReturnID
                              transactionID:(int32_t)aTransactionID {
  FakeDescriptor* const result = [FakeDescriptor new];
  result->parameters = [NSMutableDictionary new];
  result->eventClass = aClass;
  result->eventID = anID;
  result->target = aTarget;
  result->returnID = aReturnID;
  result->transactionID = aTransactionID;
  return result;
}

- (void)setParamDescriptor:(FakeDescriptor*)descriptor forKeyword:(AEKeyword)keyword {
  [parameters setObject:descriptor forKey:[NSNumber numberWithUnsignedInt:keyword]];
}

- (FakeDescriptor*)paramDescriptorForKeyword:(AEKeyword)keyword {
  return [parameters objectForKey:[NSNumber numberWithUnsignedInt:keyword]];
}

// From 1; the position after the last appends, one that is taken is replaced.
- (void)insertDescriptor:(FakeDescriptor*)descriptor atIndex:(NSInteger)index {
  const NSInteger count = static_cast<NSInteger>([items count]);
  if (index < 1 || index > count + 1) [NSException raise:NSRangeException format:@"position"];
  if (index == count + 1) {
    [items addObject:descriptor];
  } else {
    [items replaceObjectAtIndex:static_cast<NSUInteger>(index - 1) withObject:descriptor];
  }
}

- (FakeDescriptor*)descriptorAtIndex:(NSInteger)index {
  if (index < 1 || index > static_cast<NSInteger>([items count])) return nil;
  return [items objectAtIndex:static_cast<NSUInteger>(index - 1)];
}

- (NSInteger)numberOfItems {
  return static_cast<NSInteger>([items count]);
}

- (NSString*)stringValue {
  if (isBoolean) return [value intValue] != 0 ? @"true" : @"false";
  return [value isKindOfClass:[NSNumber class]] ? [value stringValue] : value;
}

- (int32_t)int32Value {
  return [value intValue];
}

- (unsigned char)booleanValue {
  return [value intValue] != 0;
}

@end

@implementation FakeScript

- (id)initWithSource:(NSString*)source {
  fakeSource = [source copy];
  return [super init];
}

- (BOOL)compileAndReturnError:(NSDictionary**)error {
  if (!fakeCompiles) *error = [NSDictionary dictionary];
  return fakeCompiles;
}

- (FakeDescriptor*)executeAppleEvent:(FakeDescriptor*)event error:(NSDictionary**)error {
  fakeEvent = [event retain];
  if (fakeReply == nil) *error = fakeError;
  return fakeReply;
}

@end
