#pragma once

#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// Returns the lines of an INI file as IniFile splits them. Throws a `Failure` if the file cannot
/// be read.
std::vector<TString<wchar_t>> ReadIniLines(const InputPath& path);

bool IsIniHeader(const TString<wchar_t>& line);

/// Returns the name of the section that a header begins.
TString<wchar_t> GetIniSection(const TString<wchar_t>& header);

/// Converts `text` to UTF-8 and escapes characters that a terminal would act on.
std::string ToVisibleUtf8(const TString<wchar_t>& text);

} // namespace Tool
