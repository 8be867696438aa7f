#pragma once

#include <string>

namespace Toolkit {

// Rewrites patterns of PCRE 1 for PCRE 2.

/// Returns `pattern` with the syntax that PCRE 2 rejects replaced: the setting (*UTF8) becomes
/// (*UTF), the class "[\w-.]" becomes "[\w\-.]".
std::string TranslateToPcre2(const std::string& pattern);

/// The options of pcre_exec() that pcre2_match() lacks: newlines, line breaks (\R), no start
/// optimisation. AddPatternSettings() adds them to the pattern instead.
constexpr int c_settingOptions = 0x05F00000;

/// Whether `options` has a valid value for the newline and for the kind of line break; 0 means
/// the default.
bool AreNewlinesKnown(int options);

/// Returns `pattern` with the settings that `options` asks for. They are inserted after the
/// settings of the pattern, which they override.
std::string AddPatternSettings(std::string pattern, int options);

} // namespace Toolkit
