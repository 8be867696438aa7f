#include "toolkit/regExp/RegExp.h"

// A plug-in shows its entry points and nothing else.
#define PLUGIN_API extern "C" __attribute__((visibility("default")))

namespace {

using Toolkit::RegExp;
using Toolkit::RegExpException;
using Toolkit::RegExpOptions;
using Toolkit::smart_ptr;

// The end of the message; what is before it is the engine's own text.
constexpr const char* c_pattern = "abcdef(";

} // namespace

/// Lets the exception of a pattern that does not compile leave the plug-in.
PLUGIN_API void ThrowFromLibrary()
{
    RegExp(TString<char>(c_pattern), RegExpOptions::None).IsMatch("subject");
}

/// Throws such an exception itself.
PLUGIN_API void ThrowFromPlugin()
{
    const smart_ptr<RegExpException> exception(new RegExpException());
    exception->message = c_pattern;
    throw smart_ptr<RegExpException>(exception);
}

/// Whether what `thrower` throws arrives as the exception of a pattern.
PLUGIN_API bool Catches(void (*thrower)())
{
    try {
        thrower();
    } catch (const smart_ptr<RegExpException>& exception) {
        return exception->message.find(c_pattern) != TString<char>::npos;
    } catch (...) {
        return false;
    }
    return false;
}
