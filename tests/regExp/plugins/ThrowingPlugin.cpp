#include "toolkit/regExp/RegExp.h"

// A plug-in exports only its entry points.
#define PLUGIN_API extern "C" __attribute__((visibility("default")))

namespace {

using Toolkit::RegExp;
using Toolkit::RegExpException;
using Toolkit::RegExpOptions;
using Toolkit::smart_ptr;

// An invalid pattern. The exception's message ends with it, after the engine's own message.
constexpr const char* c_pattern = "abcdef(";

} // namespace

/// Makes the library throw its exception for an invalid pattern. The exception leaves the plug-in.
PLUGIN_API void ThrowFromLibrary()
{
    RegExp(TString<char>(c_pattern), RegExpOptions::None).IsMatch("subject");
}

/// Throws the same kind of exception from the plug-in's own code.
PLUGIN_API void ThrowFromPlugin()
{
    const smart_ptr<RegExpException> exception(new RegExpException());
    exception->message = c_pattern;
    throw smart_ptr<RegExpException>(exception);
}

/// Whether the plug-in catches a `smart_ptr<RegExpException>` with the expected message from
/// `thrower`.
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
