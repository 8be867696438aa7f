#pragma once

#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// Returns the lines of an INI file as IniFile splits them. Throws a `Failure` if the file cannot
/// be read.
std::vector<TString<wchar_t>> ReadIniLines(const InputPath& path);

/// Whether `line` begins a section, like "[Main]".
bool IsIniHeader(const TString<wchar_t>& line);

/// Returns the name in a header: "Main" for "[Main]".
TString<wchar_t> GetIniSection(const TString<wchar_t>& header);

/// Converts `text` to UTF-8, in the form of AppendVisible().
std::string ToVisibleUtf8(const TString<wchar_t>& text);

} // namespace Tool
