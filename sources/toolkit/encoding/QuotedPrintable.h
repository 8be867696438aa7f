#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

/// The upper-case hexadecimal digits: "0123456789ABCDEF".
extern TOOLKIT_API const char* const HEX;

namespace Toolkit {

/// Encodes strings as quoted-printable and decodes them.
///
/// Wide strings are converted to and from UTF-8, up to their first null character. A conversion of
/// invalid input returns the empty string, and so does one that runs out of memory. Any thread may
/// call the operations; nothing is thrown or logged.
class TOOLKIT_API QP {
public:
    /// Whether `text` must be encoded: `lineLength` exceeds `maxLineLength`, or `text` contains a
    /// line feed or, unless `ignoreCharacters`, a byte that ToQP() escapes. The byte 0x7F does not
    /// count, although it is escaped.
    static bool HasToBeQP(const TString<char>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The same for a wide string, but `ignoreCharacters` has no effect: only the lengths and line
    /// feeds count.
    static bool HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// Encodes `text` on one line, escaping line ends too: "a b" becomes "a=20b".
    ///
    /// Escapes spaces, control characters, everything outside ASCII, and
    /// " ( ) , / : ; < = > ? @ [ \ ]
    static TString<wchar_t> ToQP(const TString<wchar_t>& text);

    /// Encodes `text` and splits it with soft line breaks ("=", carriage return, line feed) into a
    /// first line of at most `firstLineLength` characters and further lines of at most
    /// `lineLength`, counting the "=" at their ends. Inserts no break if `lineLength` is below 4.
    ///
    /// A break never follows the "=" of an escape, but may separate its two digits. If
    /// `firstLineLength` is 1, a break comes before the first character; if it is 0, there are
    /// none.
    ///
    /// Positions are 32-bit and wrap around. With a `lineLength` above 0x7FFFFFFE, each break is
    /// therefore inserted 0xFFFFFFFE - `lineLength` characters to the left of the previous one:
    /// 0xFFFFFFFD puts a break before each character of the first line. The two largest values
    /// insert only one break, because they would repeat it forever.
    static TString<wchar_t> ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                                 unsigned int lineLength);

    /// Decodes `text`: "=" and two hexadecimal digits of either case become one byte.
    ///
    /// "G" and "g" count as digits, with the value 16. A "=" before anything else is dropped, so
    /// the carriage return and line feed of a soft line break stay. A "=" among the last two
    /// characters is kept, unless it is the whole text. A null byte, as from "=00", ends the
    /// result.
    static TString<wchar_t> ToUNICODE(const TString<wchar_t>& text);
};

} // namespace Toolkit
