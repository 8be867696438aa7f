#pragma once

#include "toolkit/core/TString.h"

#include <vector>

namespace Toolkit {

/// What `CmdLineParser::Tokenize` gives. Want of memory is thrown, so that nobody takes it for a
/// line without tokens.
std::vector<TString<wchar_t>> CommandLineTokens(const TString<wchar_t>& line);

} // namespace Toolkit
