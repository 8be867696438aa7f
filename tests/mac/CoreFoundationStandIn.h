#pragma once

#include <string>

/// A Core Foundation that knows one locale, whose patterns the test sets.
namespace Toolkit::MacStandIns {

void SetShortPatterns(const std::string& date, const std::string& time);

/// Objects that were created and not released.
int CountObjects();

} // namespace Toolkit::MacStandIns
