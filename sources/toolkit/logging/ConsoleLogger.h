#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output.
///
/// Inserts the text into `std::wcout`. If standard output is already byte-oriented, because the
/// program used `printf` or `std::cout` first, and `std::wcout` still has its original buffer,
/// writes the text to `stdout` as bytes in the encoding of the C locale instead. Once `std::wcout`
/// has written to standard output, `printf` and `std::cout` print nothing.
///
/// Appends no line feed, does not flush and ignores errors. A character that the locale cannot
/// encode becomes "?" or the C library's transliteration. Until the program calls
/// `setlocale(LC_ALL, "")`, the locale can encode only ASCII.
class TOOLKIT_API ConsoleLogger : public ILogger {
public:
    explicit ConsoleLogger(LogSeverity threshold);
    ~ConsoleLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
