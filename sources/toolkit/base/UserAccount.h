#pragma once

#include "toolkit/core/TString.h"

/// The account that the process runs under, from the system's user database. Texts are empty when
/// the database does not know it.
namespace Toolkit::UserAccount {

TString<wchar_t> LoginName();

/// What HOME names, whether it exists or not; without HOME the directory of the user database.
TString<wchar_t> HomeDirectory();

} // namespace Toolkit::UserAccount
