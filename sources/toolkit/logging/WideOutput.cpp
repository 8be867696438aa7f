#include "toolkit/logging/WideOutput.Private.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <locale>

namespace Toolkit {
namespace {

bool IsAscii(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0 && c < 0x80; });
}

// A file buffer converts later than it takes a character, and keeps for ever what it cannot
// convert.
bool CanConvert(const std::wstreambuf* buffer, wchar_t character)
{
    using Converter = std::codecvt<wchar_t, char, std::mbstate_t>;

    if (!dynamic_cast<const std::wfilebuf*>(buffer))
        return true;
    const std::locale locale = buffer->getloc();
    std::mbstate_t state{};
    const wchar_t* from = nullptr;
    char* to = nullptr;
    char bytes[16];
    return std::use_facet<Converter>(locale).out(state, &character, &character + 1, from, bytes,
                                                 bytes + sizeof bytes, to) == Converter::ok;
}

// A stream that met a character it cannot write refuses everything after it.
void WriteCharacter(wchar_t character)
{
    if (CanConvert(std::wcout.rdbuf(), character) && std::wcout.put(character))
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
    } catch (const std::exception&) {
        // The program asked the stream to throw; a logger has nobody to tell.
    }
    // Without a buffer the state is bad for good, and clearing it may throw.
    if (std::wcout.rdbuf())
        std::wcout.clear();
}

} // namespace Toolkit
