#pragma once

#include <string>

namespace Toolkit {

/// Rewrites `pattern`, which must compile, so that recursion works as in PCRE 1: the engine never
/// backtracks into a call such as (?1), or into a group that refers to itself. PCRE 2 does, unless
/// the call or the group is in an atomic group.
///
///     "(a(?1)?b)"   becomes "(a(?>(?1))?b)"
///     "(a|b\1)+"    becomes "(?>(a|b\1))+"
///
/// Returns `pattern` unchanged if it contains unknown syntax.
std::string MakeRecursionAtomic(const std::string& pattern);

/// Whether MakeRecursionAtomic() may change `pattern`. Most patterns have neither calls nor
/// references.
bool MayRecurse(const std::string& pattern);

} // namespace Toolkit
