#include "regExp/engines/RandomPattern.h"

#include <cstddef>
#include <iterator>

namespace Toolkit::TestSupport {
namespace {

constexpr const char* c_settings[] = {"(*UTF8)",
                                      "(*UCP)",
                                      "(*CR)",
                                      "(*LF)",
                                      "(*CRLF)",
                                      "(*ANY)",
                                      "(*ANYCRLF)",
                                      "(*BSR_ANYCRLF)",
                                      "(*BSR_UNICODE)",
                                      "(*NO_START_OPT)",
                                      "(*UTF)",
                                      "(?i)",
                                      "(*NO_AUTO_POSSESS)",
                                      "(?J)",
                                      "(?m)",
                                      "(?s)",
                                      "(?x)",
                                      "(?U)",
                                      "(?Jims)"};

// Excludes \C, which may crash the engines themselves.
constexpr const char* c_atoms[] = {"a",
                                   "b",
                                   "c",
                                   "ab",
                                   "ba",
                                   "A",
                                   " ",
                                   "\xC3\xA9",
                                   "\xC3\x89",
                                   "\xE2\x82\xAC",
                                   "\xF0\x90\x90\x80",
                                   ".",
                                   ".",
                                   "^",
                                   "$",
                                   "\\b",
                                   "\\B",
                                   "\\A",
                                   "\\z",
                                   "\\Z",
                                   "\\G",
                                   "\\K",
                                   "\\d",
                                   "\\D",
                                   "\\w",
                                   "\\W",
                                   "\\s",
                                   "\\S",
                                   "\\h",
                                   "\\H",
                                   "\\v",
                                   "\\V",
                                   "\\N",
                                   "\\R",
                                   "\\X",
                                   "\\n",
                                   "\\r",
                                   "\\x61",
                                   "\\x{E9}",
                                   "\\141",
                                   "\\Qa.\\E",
                                   "\\p{L}",
                                   "\\P{Lu}",
                                   "\\p{Greek}",
                                   "\\pN",
                                   "[ab]",
                                   "[^a]",
                                   "[a-c]",
                                   "[^\\n]",
                                   "[[:alpha:]]",
                                   "[[:^digit:]]",
                                   "[]a]",
                                   "[\\w\\s]",
                                   "[\xC3\xA0-\xC3\xBF]",
                                   "[^\\W]",
                                   "[[:<:]]",
                                   "[[:>:]]",
                                   "\n",
                                   "\r\n",
                                   "#",
                                   "1"};

constexpr const char* c_references[] = {"\\1",    "\\2",    "\\g{1}", "\\g{-1}", "\\k<n>", "\\k{m}",
                                        "(?P=n)", "(?1)",   "(?2)",   "(?R)",    "(?-1)",  "(?+1)",
                                        "(?&n)",  "(?P>m)", "\\g<1>", "\\g'n'",  "\\3"};

constexpr const char* c_backtrackingVerbs[] = {"(*COMMIT)",  "(*PRUNE)",  "(*SKIP)",   "(*THEN)",
                                               "(*PRUNE:a)", "(*SKIP:a)", "(*THEN:b)", "(*MARK:a)"};

constexpr const char* c_verbsCalloutsAndComments[] = {"(*FAIL)", "(*F)",  "(*ACCEPT)",
                                                      "(?C)",    "(?C7)", "(?#note)"};

constexpr const char* c_openings[] = {"(",      "(",     "(",      "(?:",  "(?:", "(?<n>", "(?<m>",
                                      "(?P<n>", "(?'m'", "(?>",    "(?=",  "(?!", "(?<=",  "(?<!",
                                      "(?|",    "(?i:",  "(?s-m:", "(?m:", "(?x:"};

// Excludes negative assertions, after which PCRE 1 reads uninitialised memory.
constexpr const char* c_conditions[] = {"(?(1)",    "(?(2)",  "(?(<n>)",    "(?(R)",  "(?(?=a)",
                                        "(?(?<=a)", "(?(R1)", "(?(DEFINE)", "(?(R&n)"};

constexpr const char* c_quantifiers[] = {
    "*",   "+",     "?",     "*?",   "+?",     "??",     "*+",  "++",   "?+", "{2}",
    "{0}", "{1,2}", "{0,3}", "{2,}", "{1,2}?", "{0,2}+", "{1}", "{0,}", "{3}"};

constexpr const char* c_subjectPieces[] = {"a",
                                           "a",
                                           "b",
                                           "b",
                                           "c",
                                           "ab",
                                           "aa",
                                           "A",
                                           " ",
                                           "\n",
                                           "\r\n",
                                           "\r",
                                           "\xC3\xA9",
                                           "\xC3\x89",
                                           "1",
                                           "a.",
                                           "\xE2\x82\xAC",
                                           "-",
                                           "#",
                                           "\xCC\x81",
                                           "\x0B",
                                           "\xE2\x80\xA8",
                                           "\xF0\x90\x90\x80",
                                           "abc"};

constexpr const char* c_invalidPieces[] = {"\xFF",
                                           "\x80",
                                           "\xC3",
                                           "\xE2\x82",
                                           "\xC0\x80",
                                           "\xED\xA0\x80",
                                           "\xF0\x9F",
                                           "\xF5\x80\x80\x80",
                                           "\xF8\x88\x80\x80\x80",
                                           "\xE0\x80\x80"};

// Options of pcre_exec(). RegExp::Replace() uses 0x580. Searches reject 0x2.
constexpr int c_options[] = {0x10,       0x80,       0x100,      0x400,      0x10000000,
                             0x00100000, 0x00200000, 0x00300000, 0x00400000, 0x00500000,
                             0x00800000, 0x01000000, 0x04000000, 0x580,      0x2};

bool IsAssertion(const std::string& item)
{
    for (const char* opening : {"(?=", "(?!", "(?<=", "(?<!"}) {
        if (item.rfind(opening, 0) == 0)
            return true;
    }
    return false;
}

} // namespace

std::string RandomPattern::Pattern()
{
    // Limits end searches that would try too many paths.
    std::string pattern = "(*LIMIT_MATCH=20000)(*LIMIT_RECURSION=3000)";
    while (OneIn(4))
        pattern += AnyOf(c_settings);
    // Groups that references can refer to.
    if (OneIn(2))
        pattern += OneIn(2) ? "(?J)(?<n>a)?(?<m>b)?" : "(a|b)?(c)?";
    return pattern + Alternatives(0);
}

std::string RandomPattern::Subject()
{
    std::string subject;
    for (auto count = m_random.Number(0, 10); count > 0; --count)
        subject += AnyOf(c_subjectPieces);
    if (OneIn(20))
        subject.insert(m_random.Number<std::size_t>(0, subject.size()), AnyOf(c_invalidPieces));
    return subject;
}

std::string RandomPattern::Replacement()
{
    constexpr const char* replacements[] = {"", "a", "b", "xy", "$1", "\xC3\xA9", "\n"};
    return AnyOf(replacements);
}

int RandomPattern::Options()
{
    int options = 0;
    while (OneIn(3))
        options |= c_options[m_random.Number<std::size_t>(0, std::size(c_options) - 1)];
    return options;
}

std::string RandomPattern::Alternatives(int depth)
{
    std::string alternatives;
    do {
        for (auto count = m_random.Number(0, depth == 0 ? 5 : 3); count > 0; --count)
            alternatives += Item(depth);
        if (!OneIn(4))
            return alternatives;
        alternatives += '|';
    } while (true);
}

std::string RandomPattern::Item(int depth)
{
    std::string item = Atom(depth);
    if (OneIn(3) && (m_hasRareConstructs || !IsAssertion(item)))
        item += AnyOf(c_quantifiers);
    return item;
}

std::string RandomPattern::Atom(int depth)
{
    const int kind = m_random.Number(1, 20);
    if (kind <= 6 && depth < 4)
        return Group(depth + 1);
    if (kind == 7)
        return AnyOf(c_references);
    if (kind == 8)
        return m_hasRareConstructs && OneIn(2) ? AnyOf(c_backtrackingVerbs)
                                               : AnyOf(c_verbsCalloutsAndComments);
    return AnyOf(c_atoms);
}

std::string RandomPattern::Group(int depth)
{
    if (m_hasRareConstructs && OneIn(12))
        return AnyOf(c_conditions) + Alternatives(depth) + ")";
    return AnyOf(c_openings) + Alternatives(depth) + ")";
}

} // namespace Toolkit::TestSupport
