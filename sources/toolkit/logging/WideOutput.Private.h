#pragma once

#include <string>

namespace Toolkit {

/// Inserts `text` into `std::wcout`, which stays usable whatever the text holds.
void WriteToWideOutput(const std::wstring& text);

} // namespace Toolkit
