#pragma once

#include <string>

// The account that the process runs under, from the system's user database. The texts are empty
// when the database does not know it.
namespace Toolkit::Base {

std::wstring GetLoginName();

/// What HOME names, whether it exists or not; without HOME the directory of the user database.
std::wstring GetHomeDirectory();

} // namespace Toolkit::Base
