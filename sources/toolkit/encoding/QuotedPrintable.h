#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

/// The upper-case hexadecimal digits: "0123456789ABCDEF".
extern TOOLKIT_API const char* const HEX;

namespace Toolkit {

/// Quoted-printable text.
///
/// Wide text is converted to and from UTF-8, up to its first null character; a text that is not
/// valid gives the empty text. Any thread may call the operations; nothing is thrown or logged.
/// When out of memory a text is empty.
class TOOLKIT_API QP {
public:
    /// Whether `text` must be encoded: because `lineLength` is above `maxLineLength`, because it
    /// contains a line feed or, without `ignoreCharacters`, because it contains a byte above 0x7F
    /// or one that is escaped. The byte 0x7F does not count, although it is escaped.
    static bool HasToBeQP(const TString<char>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The same for wide text, but only the lengths and line feeds count.
    static bool HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The form of `text` on one line, with line ends escaped too: "a b" gives "a=20b".
    ///
    /// Escaped are spaces, control characters, all outside ASCII, and " ( ) , / : ; < = > ? @ [ \ ]
    static TString<wchar_t> ToQP(const TString<wchar_t>& text);

    /// The form of `text` cut by soft line breaks ("=", carriage return, line feed), into a first
    /// line of at most `firstLineLength` characters and further ones of at most `lineLength`,
    /// counting the "=" at their ends. No break when `lineLength` is below 4.
    ///
    /// A break never follows the "=" of an escape, but may separate its two digits. A first length
    /// of 1 puts a break before everything; with 0 there is no break at all.
    ///
    /// Positions have 32 bits. A `lineLength` above 0x7FFFFFFE therefore steps to the left, by
    /// 0xFFFFFFFE - `lineLength`: 0xFFFFFFFD puts a break before each character of the first line.
    /// The two largest values make only one break, because their steps would never end.
    static TString<wchar_t> ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                                 unsigned int lineLength);

    /// Decodes `text`: "=" and two hexadecimal digits of either case are a byte.
    ///
    /// "G" is a digit, too, with the value 16. A "=" before anything else is dropped, so the
    /// carriage return and line feed of a soft line break stay. A "=" among the last two characters
    /// is kept, unless it is the whole text. Text after "=00" is cut off.
    static TString<wchar_t> ToUNICODE(const TString<wchar_t>& text);
};

} // namespace Toolkit
