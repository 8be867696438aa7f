#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output.
///
/// Inserts the text into `std::wcout`. If standard output is already byte-oriented, because the
/// program used `printf` or `std::cout` first, and `std::wcout` still has its original buffer,
/// writes the text to `stdout` as bytes in the encoding of the C locale instead. After the first
/// text through `std::wcout`, `printf` and `std::cout` print nothing: that is the C library's rule.
///
/// Adds nothing, does not flush and ignores errors. A character that the locale cannot encode is
/// written as "?" or as the C library transliterates it: before the program calls
/// `setlocale(LC_ALL, "")`, that is every character outside ASCII.
class TOOLKIT_API ConsoleLogger : public ILogger {
public:
    explicit ConsoleLogger(LogSeverity threshold);
    ~ConsoleLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
