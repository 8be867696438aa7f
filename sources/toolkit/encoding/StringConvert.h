#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Converts strings to numbers and back, like the standard streams under the classic locale:
/// decimal, with a decimal dot and without grouping, regardless of the global C++ locale.
///
/// Any thread may call the operations; nothing is thrown or logged. When out of memory, a returned
/// string is empty, and reading a long floating-point number may leave `value` unchanged.
class TOOLKIT_API StringConvert {
public:
    /// Each function reads the number at the beginning of `text`, after white space, into `value`,
    /// and always returns true.
    ///
    /// Without a number, `value` is unchanged; " -12x" gives -12. A number out of range gives the
    /// nearest limit of the type. In an unsigned type, a negative number wraps around; if its
    /// magnitude is out of range, it gives the maximum. In a double, an exponent without digits
    /// makes the whole number invalid: "1e" leaves `value` unchanged.
    static bool ToInt32(const TString<char>& text, int& value);
    static bool ToInt32(const TString<wchar_t>& text, int& value);
    static bool ToUint32(const TString<char>& text, unsigned int& value);
    static bool ToUint32(const TString<wchar_t>& text, unsigned int& value);
    static bool ToInt64(const TString<char>& text, long long& value);
    static bool ToInt64(const TString<wchar_t>& text, long long& value);
    static bool ToUint64(const TString<char>& text, unsigned long long& value);
    static bool ToUint64(const TString<wchar_t>& text, unsigned long long& value);
    static bool ToDouble(const TString<char>& text, double& value);
    static bool ToDouble(const TString<wchar_t>& text, double& value);

    /// Each function returns `value` in decimal, without padding. A double is formatted like
    /// printf's "%g", with up to six significant digits: "0.5", "1.23457e+06".
    static TString<wchar_t> UStringFromInt32(int value);
    static TString<wchar_t> UStringFromUint32(unsigned int value);
    static TString<wchar_t> UStringFromInt64(long long value);
    static TString<wchar_t> UStringFromUInt64(unsigned long long value);
    static TString<wchar_t> UStringFromDouble(double value);
    static TString<char> StringFromInt32(int value);
    static TString<char> StringFromUint32(unsigned int value);
    static TString<char> StringFromInt64(long long value);
    static TString<char> StringFromUInt64(unsigned long long value);
    static TString<char> StringFromDouble(double value);

    /// Returns the last `count` characters of `text` that are not spaces (U+0020), in their order,
    /// up to the first null character among them: "12 34 56" and 4 give "3456".
    static TString<wchar_t> GetCharactersFromRight(const TString<wchar_t>& text,
                                                   unsigned int count);
};

} // namespace Toolkit
