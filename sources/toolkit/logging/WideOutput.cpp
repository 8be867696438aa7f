#include "toolkit/logging/WideOutput.Private.h"

#include <algorithm>
#include <iostream>

namespace Toolkit {
namespace {

bool IsAscii(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0 && c < 0x80; });
}

// A stream that met a character it cannot write refuses everything after it.
void WriteCharacter(wchar_t character)
{
    if (std::wcout.put(character))
        return;
    std::wcout.clear();
    std::wcout.put(L'?');
}

} // namespace

void WriteToWideOutput(const std::wstring& text)
{
    try {
        if (IsAscii(text))
            std::wcout << text;
        else
            std::for_each(text.begin(), text.end(), WriteCharacter);
        std::wcout.clear();
    } catch (const std::exception&) {
        // The program asked the stream to throw; a logger has nobody to tell.
    }
}

} // namespace Toolkit
