#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/MatchResult.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

#include <map>
#include <vector>

namespace Toolkit {

struct TOOLKIT_API RegExpOptions {
    /// These have no effect. Write options into the pattern instead, such as "(?i)".
    enum Modifiers { None = 0, IgnoreCase = 1, MultiLine = 2, DotAll = 4, Extended = 8 };
};

/// A regular expression in the syntax of Perl, over UTF-8.
///
///     const RegExp address(TString<char>("(?<user>\\w+)@(?<host>[\\w.]+)"), RegExpOptions::None);
///     const smart_ptr<MatchResult> match = address.Match("Jane <jane@example.org>");
///     if (match->Success())
///         Greet(match->GetGroup("user")->value); // "jane"
///
/// Wide subjects and patterns are first converted to UTF-8, up to their first null character. A
/// wide string with a character above U+10FFFF counts as empty; one with a surrogate is rejected as
/// invalid UTF-8. Every operation compiles the pattern, up to its first null character.
///
/// Failures throw a `smart_ptr<RegExpException>`: the pattern does not compile, the subject is not
/// UTF-8 or has 2 GiB or more, a search starts at an invalid offset or takes too many steps, or
/// stack or memory runs out. Only copying a `RegExp` throws `std::bad_alloc`. Nothing is logged.
///
/// A search may take 10 million steps from each start position, which is a few hundred
/// milliseconds. The call as a whole is not limited: `\s+[bc]` takes minutes on 200,000 spaces,
/// because from each space it reads all those after it. Limit the length of the subject if the
/// pattern or the subject is not trusted.
///
/// Two constructs have undefined behaviour and may crash the engine; do not use them. `\C` matches
/// a single byte and can split a character. A negative assertion as a condition, such as
/// "(?(?!a)b)", makes PCRE 1 read uninitialised memory.
///
/// Any thread may call the operations as long as none assigns to the object.
class TOOLKIT_API RegExp {
public:
    /// Replacements by group name, ordered by the bytes of the names.
    using ReplacementMappedStrings = std::map<TString<char>, TString<char>>;

    RegExp(const TString<char>& pattern, RegExpOptions::Modifiers modifiers);
    RegExp(const TString<wchar_t>& pattern, RegExpOptions::Modifiers modifiers);

    /// Whether the pattern matches anywhere in `subject`.
    ///
    /// Also false if a group after group 19 took part in the match.
    bool IsMatch(const TString<char>& subject) const;
    bool IsMatch(const TString<wchar_t>& subject) const;

    /// Returns the first match: its groups up to the last one that took part, with their names.
    ///
    /// Without a match `Success()` is false and there are no groups. If a group after group 19 took
    /// part in the match, there are no groups either, though `Success()` is true. A match that ends
    /// before it begins, as `\K` in a look-ahead can cause, has an empty value.
    smart_ptr<MatchResult> Match(const TString<char>& subject) const;
    smart_ptr<MatchResult> Match(const TString<wchar_t>& subject) const;

    /// Returns `subject` with every match replaced by the literal string `replacement`. Stops at a
    /// match in which a group after group 19 took part. Ignores `flag`.
    ///
    /// Empty matches do not count, "^" does not match at the beginning of `subject`, and "$" does
    /// not match at its end. The search continues after the replacement, in the changed string:
    /// look-behinds see the replacement.
    ///
    /// The offset at which the search continues is taken modulo 65536. In a longer string,
    /// replacements may therefore be searched again; if the replacement contains a match, this may
    /// repeat forever or until memory runs out. With `\K` in a look-behind a match may begin inside
    /// the last replacement: replacing "(?<=\Ka)" with "a" never ends. A search that would continue
    /// inside a character throws.
    TString<char> Replace(const TString<char>& replacement, const TString<char>& subject,
                          unsigned char flag);

    /// Returns `subject` with the groups of the first match replaced: group 1 by the first entry,
    /// and so on. Returns an empty string without a match, and `subject` if a group after group 19
    /// took part in the match.
    ///
    /// Missing entries count as empty strings. A group that took no part is skipped. Each range is
    /// moved by how much the string has grown so far. This is right only for groups that follow one
    /// another: if groups overlap, the later replacement overwrites bytes outside its group.
    TString<char> Replace(const std::vector<TString<char>>& replacements,
                          const TString<char>& subject);

    /// Replaces named groups in the same way, each by the entry with its name. Other groups stay.
    ///
    /// A name that is not in the map is added to it with an empty string, which also replaces the
    /// group.
    TString<char> Replace(ReplacementMappedStrings& replacements, const TString<char>& subject);

    /// Returns the name and version of the engine in use, such as "PCRE 8.39 2016-06-14".
    /// Empty when out of memory.
    static TString<char> GetEngineVersion();

    // The steps of the operations above. `result` must not be null.

    /// Compiles the pattern of `result` and replaces its compiled pattern, which is null after a
    /// failure.
    void RegExp_compile(const smart_ptr<MatchResult>& result) const;

    /// Searches the subject of `result`, whose pattern must be compiled, from the byte
    /// `startOffset` on, and stores `resultCode` and `ovector`. Adds no groups.
    void RegExp_exec(const smart_ptr<MatchResult>& result, unsigned short startOffset) const;

    /// Replaces a range of `target`: that of `group` in `result`, moved by `shift` bytes.
    ///
    /// Does nothing for a group that does not exist or took no part, and for a range that begins
    /// outside `target`.
    void RegExp_replace(const smart_ptr<MatchResult>& result, int group, TString<char>& target,
                        const TString<char>& replacement, int shift);

private:
    TString<char> m_pattern;
    [[maybe_unused]] RegExpOptions::Modifiers m_modifiers; // unused; keeps the layout
};

} // namespace Toolkit
