#pragma once

#include "toolkit/core/TString.h"

#include <string>
#include <utility>
#include <vector>

namespace Toolkit::TestSupport {

/// Names and bytes of the entries. A name that ends with "/" is a directory, which has no bytes.
using ZipContent = std::vector<std::pair<std::wstring, std::string>>;

/// Writes an archive with wxWidgets, which stores names as UTF-8 and marks those that are not
/// ASCII.
void WriteZip(const TString<wchar_t>& path, const ZipContent& content);

} // namespace Toolkit::TestSupport
