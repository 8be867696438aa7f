#pragma once

#include <string>

namespace Toolkit {

/// Writes `text` to the wide standard output; see `ConsoleLogger`. The output stays usable whatever
/// `text` contains.
void WriteToWideOutput(const std::wstring& text);

} // namespace Toolkit
