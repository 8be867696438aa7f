#include "mac/CoreFoundationStandIn.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace {

std::string s_datePattern;
std::string s_timePattern;
int s_objects = 0;

// Every reference points to an Object. The `text` of a formatter is its pattern.
struct Object {
    std::string text;
};

Object* Create(const std::string& text)
{
    ++s_objects;
    return new Object{text};
}

} // namespace

namespace Toolkit::MacStandIns {

void SetShortPatterns(const std::string& date, const std::string& time)
{
    s_datePattern = date;
    s_timePattern = time;
}

int CountObjects()
{
    return s_objects;
}

} // namespace Toolkit::MacStandIns

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFLocaleRef CFLocaleCopyCurrent()
{
    return reinterpret_cast<CFLocaleRef>(Create("locale"));
}

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale,
                                         CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle)
{
    if (!locale)
        return nullptr;
    const bool isDate =
        dateStyle == kCFDateFormatterShortStyle && timeStyle == kCFDateFormatterNoStyle;
    return reinterpret_cast<CFDateFormatterRef>(Create(isDate ? s_datePattern : s_timePattern));
}

// A formatter serves as its own pattern string, so the caller must not release the result.
CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter)
{
    return reinterpret_cast<CFStringRef>(formatter);
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding)
{
    const std::string& text = reinterpret_cast<const Object*>(string)->text;
    const bool isAscii = std::all_of(text.begin(), text.end(),
                                     [](char character) { return (character & 0x80) == 0; });
    if (!isAscii || text.size() >= static_cast<std::size_t>(bufferSize))
        return false;
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}

void CFRelease(CFTypeRef object)
{
    --s_objects;
    delete static_cast<const Object*>(object);
}
}
