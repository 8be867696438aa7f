#include "toolkit/base/Utf8.h"
#include "toolkit/system/LocalePatterns.Private.h"

#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <type_traits>

namespace Toolkit {

const wchar_t* const c_localeProvider = L"Core Foundation";

namespace {

struct Releaser {
    void operator()(const void* object) const { CFRelease(object); }
};

template <typename Reference>
using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, Releaser>;

// Returns the pattern; empty if it contains anything outside ASCII or does not fit into the buffer.
TString<wchar_t> ReadPattern(CFDateFormatterStyle date, CFDateFormatterStyle time)
{
    const Owned<CFLocaleRef> locale(CFLocaleCopyCurrent());
    const Owned<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(kCFAllocatorDefault, locale.get(), date, time));
    char buffer[256] = {};
    if (formatter)
        CFStringGetCString(CFDateFormatterGetFormat(formatter.get()), buffer, sizeof buffer,
                           kCFStringEncodingASCII);
    return Base::DecodeUtf8(buffer);
}

} // namespace

TString<wchar_t> ReadShortDatePattern()
{
    return ReadPattern(kCFDateFormatterShortStyle, kCFDateFormatterNoStyle);
}

TString<wchar_t> ReadShortTimePattern()
{
    return ReadPattern(kCFDateFormatterNoStyle, kCFDateFormatterShortStyle);
}

} // namespace Toolkit
