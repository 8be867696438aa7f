#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

/// The upper-case hexadecimal digits: "0123456789ABCDEF".
extern TOOLKIT_API const char* const HEX;

namespace Toolkit {

/// Quoted-printable text.
///
/// Wide text is encoded in UTF-8, up to its first null character, and decoded from it; a text that
/// has no UTF-8 form, or does not decode to one, gives the empty text. Any thread may call the
/// operations; nothing is thrown or logged. When out of memory a text is empty.
class TOOLKIT_API QP {
public:
    /// Whether `text` must be encoded: since `lineLength` is above `maxLineLength`, since it holds
    /// a line feed or, without `ignoreCharacters`, since it holds a byte above 0x7F or one that is
    /// escaped. The byte 0x7F is escaped and does not count here.
    static bool HasToBeQP(const TString<char>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The same for wide text, but characters are ignored always: only the lengths and line feeds
    /// decide.
    static bool HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The form of `text` on one line, with line ends escaped too: "a b" gives "a=20b".
    ///
    /// Escaped are blanks, control characters, all outside ASCII, and " ( ) , / : ; < = > ? @ [ \ ]
    static TString<wchar_t> ToQP(const TString<wchar_t>& text);

    /// The form of `text` cut by soft line breaks ("=", carriage return, line feed), into a first
    /// line of at most `firstLineLength` characters and further ones of at most `lineLength`,
    /// counting the "=" at their ends. No break when `lineLength` is below 4.
    ///
    /// A break does not stand behind the "=" of an escape, but may stand between its two digits. A
    /// first length of 1 puts a break before everything; with 0 there is no break at all.
    ///
    /// Positions have 32 bits. A `lineLength` above 0x7FFFFFFE therefore steps to the left, by
    /// 0xFFFFFFFE less `lineLength`: 0xFFFFFFFD puts a break before each character of the first
    /// line. The two largest values, with which there would be breaks in one place without end,
    /// make one break.
    static TString<wchar_t> ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                                 unsigned int lineLength);

    /// Decodes `text`: "=" and two hexadecimal digits of either case are a byte.
    ///
    /// "G" is a digit as well, of value 16. A "=" before anything else is dropped, so that of a
    /// soft line break the carriage return and the line feed stay. A "=" among the last two
    /// characters is kept, unless it is the whole text. What follows "=00" is cut off.
    static TString<wchar_t> ToUNICODE(const TString<wchar_t>& text);
};

} // namespace Toolkit
