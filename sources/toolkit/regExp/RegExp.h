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
    /// Kept with a pattern and never read: a pattern says "(?i)" and the like itself.
    enum Modifiers { None = 0, IgnoreCase = 1, MultiLine = 2, DotAll = 4, Extended = 8 };
};

/// A regular expression in the syntax of Perl, over UTF-8.
///
/// Wide subjects and patterns are converted to UTF-8 first; a wide text that cannot be converted is
/// the empty text. The pattern is compiled by every operation, up to its first null character.
///
/// What fails throws a `smart_ptr<RegExpException>`: a pattern that does not compile, a subject
/// that is not UTF-8, and a search that takes too many steps, more stack than the calling thread
/// has left, or more memory than there is. Nothing else is thrown, and nothing is logged.
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
    /// A pattern with more than 19 groups that matches beyond the nineteenth answers false.
    bool IsMatch(const TString<char>& subject) const;
    bool IsMatch(const TString<wchar_t>& subject) const;

    /// The first match: its groups up to the last one that took part, with their names.
    ///
    /// Without a match `Success()` is false and there are no groups. There are none either, though
    /// `Success()` is true, when a match reaches beyond group 19. A group whose end lies before its
    /// begin, which `\K` can bring about, is empty.
    smart_ptr<MatchResult> Match(const TString<char>& subject) const;
    smart_ptr<MatchResult> Match(const TString<wchar_t>& subject) const;

    /// `subject` with every match replaced by `replacement`, which is taken as it stands; the last
    /// argument is ignored.
    ///
    /// Neither the empty text matches, nor "^" at the begin, nor "$" at the end of `subject`. The
    /// search goes on behind a replacement, in the text that holds it: what looks behind sees it.
    ///
    /// The search goes on at that place modulo 65536. In a text that is longer, replacements may so
    /// be searched again, and an operation whose replacement holds a match may go on until memory
    /// ends; a place that falls inside a character throws.
    TString<char> Replace(const TString<char>& replacement, const TString<char>& subject,
                          unsigned char flag);

    /// `subject` with the groups of the first match replaced: group 1 by the first entry, and so
    /// on. Without a match the empty text.
    ///
    /// The empty text stands for entries that are missing. A group that took no part is skipped.
    /// Groups are expected in increasing order and apart: a group inside another is replaced where
    /// it would stand had the outer one been replaced in front of it, as far as the text reaches.
    TString<char> Replace(const std::vector<TString<char>>& replacements,
                          const TString<char>& subject);

    /// The same for the named groups, each replaced by the entry of its name. Other groups stay.
    ///
    /// A name that is missing in the map is added to it with the empty text.
    TString<char> Replace(ReplacementMappedStrings& replacements, const TString<char>& subject);

    // What the operations are made of. `result` must hold an object.

    /// Compiles the pattern of `result` in place of what was compiled before.
    void RegExp_compile(const smart_ptr<MatchResult>& result) const;

    /// Searches the subject of `result`, which is compiled, from the byte `startOffset` on.
    void RegExp_exec(const smart_ptr<MatchResult>& result, unsigned short startOffset) const;

    /// Replaces the range that `result` gives for `group`, moved by `shift` bytes, in `target`.
    ///
    /// A group that does not exist or took no part, and a range that begins outside `target`, leave
    /// it as it is.
    void RegExp_replace(const smart_ptr<MatchResult>& result, int group, TString<char>& target,
                        const TString<char>& replacement, int shift);

private:
    TString<char> m_pattern;
    [[maybe_unused]] RegExpOptions::Modifiers m_modifiers; // unused, keeps the layout
};

} // namespace Toolkit
