#pragma once

#include <string>

namespace Toolkit {

// Where PCRE 2 needs another pattern than PCRE 1 for the same matches.

/// `pattern` as PCRE 2 knows it: the setting (*UTF8) as (*UTF), the class "[\w-.]" as "[\w\-.]".
std::string TranslateToPcre2(const std::string& pattern);

/// Options that pcre_exec() has and pcre2_match() lacks: newlines, line breaks, no start
/// optimisation. A pattern can ask for them itself.
constexpr int c_settingOptions = 0x05F00000;

/// Whether the numbers in `options` name a newline and a kind of line break.
bool AreNewlinesKnown(int options);

/// `pattern` with what `options` asks for, after its own settings, which it overrides.
std::string AddPatternSettings(std::string pattern, int options);

} // namespace Toolkit
