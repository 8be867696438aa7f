#include "toolkit/logging/WideOutput.Private.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <fstream>
#include <iostream>
#include <locale>
#include <string>

namespace Toolkit {
namespace {

// The buffer of std::wcout when the library was loaded. It writes to stdout, unless the program had
// already replaced it.
const std::wstreambuf* const s_originalBuffer = std::wcout.rdbuf();

bool IsAscii(const std::wstring& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= 0 && c < 0x80; });
}

// False if `buffer` is a std::wfilebuf that cannot convert `character`: it converts characters only
// after it has accepted them, and then gets stuck. Other buffers reject such a character
// immediately.
bool CanConvert(const std::wstreambuf* buffer, wchar_t character)
{
    using Converter = std::codecvt<wchar_t, char, std::mbstate_t>;

    if (!dynamic_cast<const std::wfilebuf*>(buffer))
        return true;
    const std::locale locale = buffer->getloc();
    std::mbstate_t state{};
    const wchar_t* from = nullptr;
    char* to = nullptr;
    char bytes[MB_LEN_MAX];
    return std::use_facet<Converter>(locale).out(state, &character, &character + 1, from, bytes,
                                                 bytes + sizeof bytes, to) == Converter::ok;
}

// Writes `character`, or "?" if the stream cannot write it. After such a failure the stream refuses
// everything until its state is cleared.
void WriteCharacter(wchar_t character)
{
    if (CanConvert(std::wcout.rdbuf(), character) && std::wcout.put(character))
        return;
    std::wcout.clear();
    std::wcout.put(L'?');
}

void Insert(const std::wstring& text)
{
    if (IsAscii(text))
        std::wcout << text;
    else
        std::for_each(text.begin(), text.end(), WriteCharacter);
}

// Whether text must be written to stdout as bytes: std::wcout still writes to stdout, and that is
// already byte-oriented, so the C library rejects wide text there.
bool NeedsBytes()
{
    return std::wcout.rdbuf() == s_originalBuffer && std::fwide(stdout, 0) < 0;
}

std::string EncodeForLocale(const std::wstring& text)
{
    std::string bytes;
    std::mbstate_t state{};
    for (const wchar_t character : text) {
        char encoded[MB_LEN_MAX];
        const std::size_t length = std::wcrtomb(encoded, character, &state);
        if (length != static_cast<std::size_t>(-1)) {
            bytes.append(encoded, length);
            continue;
        }
        bytes += '?';
        state = {};
    }
    return bytes;
}

} // namespace

void WriteToWideOutput(const std::wstring& text)
{
    try {
        if (NeedsBytes()) {
            const std::string bytes = EncodeForLocale(text);
            std::fwrite(bytes.data(), 1, bytes.size(), stdout);
            return;
        }
        Insert(text);
    } catch (const std::exception&) {
        // Out of memory, or the program has enabled exceptions on the stream. A logger reports no
        // errors.
    }
    // Without a buffer the stream stays bad, and clear() may throw.
    if (std::wcout.rdbuf())
        std::wcout.clear();
}

} // namespace Toolkit
