#pragma once

#include <cstdint>

// The declarations of CFBase, CFLocale, CFDateFormatter and CFString that the library uses, as in
// Apple's Core Foundation documentation.

extern "C" {
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFLocale* CFLocaleRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFDateFormatter* CFDateFormatterRef;
typedef signed long CFIndex;
typedef unsigned char Boolean;
typedef uint32_t CFStringEncoding;
typedef CFIndex CFDateFormatterStyle;

enum : CFDateFormatterStyle { kCFDateFormatterNoStyle = 0, kCFDateFormatterShortStyle = 1 };
enum : CFStringEncoding { kCFStringEncodingASCII = 0x0600, kCFStringEncodingUTF8 = 0x08000100 };

extern const CFAllocatorRef kCFAllocatorDefault;

CFLocaleRef CFLocaleCopyCurrent();
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale,
                                         CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);
CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);
void CFRelease(CFTypeRef object);
}
