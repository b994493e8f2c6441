// See Foundation/Foundation.h.
#pragma once

#ifdef __cplusplus
#define VELMORA_EXTERN_C extern "C"
#else
#define VELMORA_EXTERN_C extern
#endif

typedef double CGFloat;
typedef struct {
  CGFloat width;
  CGFloat height;
} CGSize;

typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;

#ifndef NS_ENUM
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#endif

VELMORA_EXTERN_C void CFRelease(CFTypeRef cf);
