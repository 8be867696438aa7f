#pragma once

#include <string>

// The account that the process runs under. A string from the system's user database is empty if the
// database has no entry for the account.
namespace Toolkit::Base {

std::wstring GetLoginName();

/// Returns the value of HOME, even if no such directory exists. If HOME is not set, empty or not
/// valid UTF-8, returns the home directory from the user database.
std::wstring GetHomeDirectory();

} // namespace Toolkit::Base
