#pragma once

#include <string>

namespace Toolkit {

// Rewrites patterns that match differently in PCRE 1 and PCRE 2.

/// Rewrites `pattern` for PCRE 2: the setting (*UTF8) becomes (*UTF), the class "[\w-.]" becomes
/// "[\w\-.]".
std::string TranslateToPcre2(const std::string& pattern);

/// The options of pcre_exec() that pcre2_match() lacks: newlines, line breaks, no start
/// optimisation. A pattern can set them itself.
constexpr int c_settingOptions = 0x05F00000;

/// Whether `options` has valid numbers for the newline and the kind of line break, or 0 for the
/// default.
bool AreNewlinesKnown(int options);

/// Returns `pattern` with the settings that `options` asks for. They are inserted after the
/// settings of the pattern, which they override.
std::string AddPatternSettings(std::string pattern, int options);

} // namespace Toolkit
