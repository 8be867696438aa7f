#pragma once

#include <string>
#include <vector>

#include "InputPath.h"

namespace Tool {

/// The lines of an INI file, as the library reads them. Throws a `Failure`.
std::vector<TString<wchar_t>> ReadIniLines(const InputPath& path);

bool IsIniHeader(const TString<wchar_t>& line);

/// The section that a header begins.
TString<wchar_t> GetIniSection(const TString<wchar_t>& header);

/// `text` in UTF-8, made visible.
std::string ToVisibleUtf8(const TString<wchar_t>& text);

} // namespace Tool
