#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

/// The upper-case hexadecimal digits: "0123456789ABCDEF".
extern TOOLKIT_API const char* const HEX;

namespace Toolkit {

/// Encodes and decodes quoted-printable.
///
/// Wide strings are converted to and from UTF-8, up to their first null character. Conversions
/// return an empty string for invalid input and when out of memory. Any thread may call the
/// operations; nothing is thrown or logged.
class TOOLKIT_API QP {
public:
    /// Whether `text` must be encoded: `lineLength` exceeds `maxLineLength`, or `text` contains a
    /// line feed. Unless `ignoreCharacters` is set, a byte that ToQP() escapes is a reason too,
    /// except for 0x7F.
    static bool HasToBeQP(const TString<char>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// The same for a wide string, but `ignoreCharacters` has no effect: only the lengths and line
    /// feeds count.
    static bool HasToBeQP(const TString<wchar_t>& text, unsigned int lineLength,
                          unsigned int maxLineLength, bool ignoreCharacters);

    /// Encodes `text` on one line, escaping line breaks too: "a b" becomes "a=20b".
    ///
    /// Escapes spaces, control characters, everything outside ASCII, and
    /// " ( ) , / : ; < = > ? @ [ \ ]
    static TString<wchar_t> ToQP(const TString<wchar_t>& text);

    /// Encodes `text` and splits it with soft line breaks ("=", carriage return, line feed) into a
    /// first line of at most `firstLineLength` characters and further lines of at most
    /// `lineLength`, counting the "=" at their ends. Inserts no break if `lineLength` is below 4.
    ///
    /// A break never follows the "=" of an escape, but may separate its two digits. If
    /// `firstLineLength` is 1, a break comes before the first character; if it is 0, there are no
    /// breaks.
    ///
    /// Positions are 32-bit and wrap around. With a `lineLength` above 0x7FFFFFFE, each break is
    /// therefore inserted 0xFFFFFFFE - `lineLength` characters before the previous one: 0xFFFFFFFD
    /// also puts a break before each character of the first line that does not follow a "=". The
    /// two largest values would insert the same break forever, so they insert it only once.
    static TString<wchar_t> ToQP(const TString<wchar_t>& text, unsigned int firstLineLength,
                                 unsigned int lineLength);

    /// Decodes `text`: "=" and two hexadecimal digits of either case become one byte.
    ///
    /// "G" and "g" count as digits, with the value 16. A "=" without two digits after it is
    /// dropped, so the carriage return and line feed of a soft line break stay. A "=" among the
    /// last two bytes of the UTF-8 form is kept, unless it is the whole text. A null byte, as from
    /// "=00", ends the result.
    static TString<wchar_t> ToUNICODE(const TString<wchar_t>& text);
};

} // namespace Toolkit
