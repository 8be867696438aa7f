#pragma once

#include <string>

namespace Toolkit {

/// `pattern`, which compiles, with recursion as PCRE 1 has it: what a call such as (?1) has
/// matched, and a group that refers to itself, is never tried in another way. In PCRE 2 it is,
/// unless it is in an atomic group.
///
///     "(a(?1)?b)"   gives "(a(?>(?1))?b)"
///     "(a|b\1)+"    gives "(?>(a|b\1))+"
///
/// A pattern that this function does not understand stays as it is.
std::string MakeRecursionAtomic(const std::string& pattern);

/// Whether there may be something to do. Most patterns have neither calls nor references.
bool MayRecurse(const std::string& pattern);

} // namespace Toolkit
