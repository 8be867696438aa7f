#include "toolkit/regExp/RegExp.h"

// A plug-in shows its entry points and nothing else.
#define PLUGIN_API extern "C" __attribute__((visibility("default")))

namespace {

using Toolkit::RegExp;
using Toolkit::RegExpException;
using Toolkit::RegExpOptions;
using Toolkit::smart_ptr;

constexpr const char* c_expected = " : missing ) (@offset: 7) abcdef(";

} // namespace

/// Lets the exception of a pattern that does not compile leave the plug-in.
PLUGIN_API void ThrowFromLibrary()
{
    RegExp(TString<char>("abcdef("), RegExpOptions::None).IsMatch("subject");
}

/// Throws such an exception itself.
PLUGIN_API void ThrowFromPlugin()
{
    const smart_ptr<RegExpException> exception(new RegExpException());
    exception->message = c_expected;
    throw smart_ptr<RegExpException>(exception);
}

/// Whether what `thrower` throws arrives as the exception of a pattern.
PLUGIN_API bool Catches(void (*thrower)())
{
    try {
        thrower();
    } catch (const smart_ptr<RegExpException>& exception) {
        return exception->message == c_expected;
    } catch (...) {
        return false;
    }
    return false;
}
