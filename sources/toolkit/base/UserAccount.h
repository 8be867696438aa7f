#pragma once

#include <string>

// The account of the process's real user ID. The functions throw `std::bad_alloc`.
namespace Toolkit::Base {

/// Returns the login name from the system's user database; empty if the database has no entry for
/// the account or cannot be read, or if the name is not valid UTF-8.
std::wstring GetLoginName();

/// Returns the value of HOME, even if no such directory exists. If HOME is not set, empty or not
/// valid UTF-8, returns the home directory from the user database; empty under the same conditions
/// as GetLoginName().
std::wstring GetHomeDirectory();

} // namespace Toolkit::Base
