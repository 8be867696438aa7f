#pragma once

#include "toolkit/core/Bytes.h"
#include "toolkit/core/smart_ptr.h"

#include <cstddef>
#include <string>

// A plain reference implementation of Base64, one character at a time.
namespace Toolkit::References {

inline const std::string c_base64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

inline std::string EncodeBase64(const std::string& bytes)
{
    std::string code;
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        unsigned int group = 0;
        for (std::size_t position = index; position < index + 3; ++position)
            group = group << 8 |
                    (position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0);
        const std::size_t remaining = bytes.size() - index;
        code += c_base64Alphabet[group >> 18];
        code += c_base64Alphabet[group >> 12 & 63];
        code += remaining >= 2 ? c_base64Alphabet[group >> 6 & 63] : '=';
        code += remaining >= 3 ? c_base64Alphabet[group & 63] : '=';
    }
    return code;
}

// Treats characters outside the alphabet as the digit 0, and stops at the first "=".
inline std::string DecodeBase64(const std::string& code)
{
    std::string bytes;
    unsigned int group = 0;
    for (std::size_t index = 0; index < code.size(); ++index) {
        const unsigned int position = index % 4;
        const bool isPad = code[index] == '=';
        const std::size_t value = c_base64Alphabet.find(code[index]);
        if (value != std::string::npos)
            group += static_cast<unsigned int>(value) << (3 - position) * 6;
        if (position != 3 && !isPad)
            continue;
        bytes += static_cast<char>(group >> 16);
        if (!isPad || position == 3)
            bytes += static_cast<char>(group >> 8);
        if (!isPad)
            bytes += static_cast<char>(group);
        group = 0;
        if (isPad)
            break;
    }
    return bytes;
}

inline std::string ContentsOf(const smart_ptr<Bytes>& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    bytes->GetBytes(&copy, &size);
    const std::string contents(reinterpret_cast<const char*>(copy), size);
    delete[] copy;
    return contents;
}

} // namespace Toolkit::References
