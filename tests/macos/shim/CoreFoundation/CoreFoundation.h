// What the declarations of the other frameworks build on. GNUstep has no Core Foundation: its references are
// objects here.
#pragma once

#import <Foundation/Foundation.h>

#define VELMORA_EXTERN_C extern "C"

typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;

VELMORA_EXTERN_C void CFRelease(CFTypeRef cf);
