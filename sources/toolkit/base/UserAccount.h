#pragma once

#include <string>

// The account that the process runs under, from the system's user database. The strings are empty
// when the database has no entry for it.
namespace Toolkit::Base {

std::wstring GetLoginName();

/// The value of HOME, even if no such directory exists; without HOME that of the user database.
std::wstring GetHomeDirectory();

} // namespace Toolkit::Base
