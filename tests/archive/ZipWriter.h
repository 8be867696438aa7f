#pragma once

#include "toolkit/core/TString.h"

#include <string>
#include <utility>
#include <vector>

namespace Toolkit::TestSupport {

/// Name and bytes of an entry; a name that ends in "/" is a directory.
using ZipContent = std::vector<std::pair<std::wstring, std::string>>;

/// Writes an archive with wxWidgets. Names are stored and marked as UTF-8.
void WriteZip(const TString<wchar_t>& path, const ZipContent& content);

} // namespace Toolkit::TestSupport
