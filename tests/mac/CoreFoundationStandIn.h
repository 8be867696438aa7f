#pragma once

#include <string>

/// A stand-in for Core Foundation with one locale, whose patterns the test sets.
namespace Toolkit::MacStandIns {

void SetShortPatterns(const std::string& date, const std::string& time);

/// Returns the number of objects that were created and not yet released.
int CountObjects();

} // namespace Toolkit::MacStandIns
