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
    /// Stored with a pattern and never read. A pattern itself says "(?i)" and the like.
    enum Modifiers { None = 0, IgnoreCase = 1, MultiLine = 2, DotAll = 4, Extended = 8 };
};

/// A regular expression in the syntax of Perl, over UTF-8.
///
///     const RegExp address(TString<char>("(?<user>\\w+)@(?<host>[\\w.]+)"), RegExpOptions::None);
///     const smart_ptr<MatchResult> match = address.Match("Jane <jane@example.org>");
///     if (match->Success())
///         Greet(match->GetGroup("user")->value); // "jane"
///
/// Wide subjects and patterns are converted to UTF-8 first; a wide text that cannot be converted is
/// the empty text. Every operation compiles the pattern, up to its first null character.
///
/// A failure throws a `smart_ptr<RegExpException>`: a pattern that does not compile, a subject that
/// is not UTF-8, and a search that takes too many steps, or more stack or memory than there is.
/// Only copying an object throws `std::bad_alloc`. Nothing is logged.
///
/// Each start position allows 10 million steps, which take some hundred milliseconds.
/// The whole call has no bound of its own: `\s+[bc]` takes minutes on 200,000 spaces, since it
/// reads the rest of them from each. Limit the length of the subject when the pattern or the
/// subject is not trusted.
///
/// Two constructs are undefined, and may crash the engine: do not use them. `\C` matches a single
/// byte and can split a character. A negative assertion as a condition, such as "(?(?!a)b)", makes
/// PCRE 1 read memory that it has not written.
///
/// Any thread may call the operations as long as none assigns to the object.
class TOOLKIT_API RegExp {
public:
    /// Replacement texts by group name, ordered by the names' bytes.
    using ReplacementMappedStrings = std::map<TString<char>, TString<char>>;

    RegExp(const TString<char>& pattern, RegExpOptions::Modifiers modifiers);
    RegExp(const TString<wchar_t>& pattern, RegExpOptions::Modifiers modifiers);

    /// Whether the pattern matches anywhere in `subject`.
    ///
    /// False also for a match that reaches beyond group 19.
    bool IsMatch(const TString<char>& subject) const;
    bool IsMatch(const TString<wchar_t>& subject) const;

    /// The first match: its groups up to the last one that took part, with their names.
    ///
    /// Without a match `Success()` is false and there are no groups. There are none either, though
    /// `Success()` is true, when a match reaches beyond group 19. A match that ends before it
    /// begins, as `\K` in a look-ahead can cause, has an empty value.
    smart_ptr<MatchResult> Match(const TString<char>& subject) const;
    smart_ptr<MatchResult> Match(const TString<wchar_t>& subject) const;

    /// `subject` with every match replaced by `replacement`, which is literal text. The last
    /// argument is ignored.
    ///
    /// The empty text never matches, nor does "^" at the beginning or "$" at the end of `subject`.
    /// The search continues after a replacement, in the text that contains it: look-behinds see it.
    ///
    /// The offset at which the search continues is taken modulo 65536. Replacements in a longer
    /// text may therefore be searched again, and a replacement that contains a match may repeat
    /// until memory runs out. With `\K` in a look-behind a match may begin inside the last
    /// replacement: "(?<=\Ka)" replaced by "a" never ends. An offset inside a character throws.
    TString<char> Replace(const TString<char>& replacement, const TString<char>& subject,
                          unsigned char flag);

    /// `subject` with the groups of the first match replaced: group 1 by the first entry, and so
    /// on. Empty without a match.
    ///
    /// Missing entries are empty texts. A group that took no part is skipped. Groups are expected
    /// in increasing order without overlaps: a group inside another is replaced at the place where
    /// it would be if the outer replacement had been inserted before it.
    TString<char> Replace(const std::vector<TString<char>>& replacements,
                          const TString<char>& subject);

    /// The same for named groups, each replaced by the entry of its name. Other groups stay.
    ///
    /// A name that the map does not have is added to it with the empty text.
    TString<char> Replace(ReplacementMappedStrings& replacements, const TString<char>& subject);

    /// The engine that the library uses and its version: "PCRE 8.39 2016-06-14". Empty when out of
    /// memory.
    static TString<char> GetEngineVersion();

    // The steps of the operations. `result` must hold an object.

    /// Compiles the pattern of `result` in place of what was compiled before.
    void RegExp_compile(const smart_ptr<MatchResult>& result) const;

    /// Searches the subject of `result`, whose pattern is compiled, from the byte `startOffset` on.
    void RegExp_exec(const smart_ptr<MatchResult>& result, unsigned short startOffset) const;

    /// Replaces the range that `result` gives for `group`, moved by `shift` bytes, in `target`.
    ///
    /// Does nothing for a group that does not exist or took no part, and for a range that begins
    /// outside `target`.
    void RegExp_replace(const smart_ptr<MatchResult>& result, int group, TString<char>& target,
                        const TString<char>& replacement, int shift);

private:
    TString<char> m_pattern;
    [[maybe_unused]] RegExpOptions::Modifiers m_modifiers; // unused, keeps the layout
};

} // namespace Toolkit
