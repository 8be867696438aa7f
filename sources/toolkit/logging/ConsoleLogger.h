#pragma once

#include "toolkit/logging/ILogger.h"

namespace Toolkit {

/// Writes log text to the wide standard output.
///
/// The text is inserted into `std::wcout`. When standard output already carries bytes, because the
/// program used `printf` or `std::cout` first, and `std::wcout` has the buffer that it started
/// with, the text is written to `stdout` as bytes in the encoding of the C locale. After the first
/// text through `std::wcout`, `printf` and `std::cout` are silent: that is the C library's rule.
///
/// Nothing is added or flushed, and errors are ignored. A character that the locale cannot encode
/// is written as "?" or as the C library transliterates it: before the program calls
/// `setlocale(LC_ALL, "")`, that is every character outside ASCII.
class TOOLKIT_API ConsoleLogger : public ILogger {
public:
    explicit ConsoleLogger(LogSeverity threshold);
    ~ConsoleLogger() override;

    void Write(const TString<wchar_t>& text) override;
};

} // namespace Toolkit
