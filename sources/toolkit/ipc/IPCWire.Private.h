#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// The bytes that the framework's version 3.2 sends between its clients and servers.
///
/// The client: Connect, a size, the topic in UTF-8. The server: Connect. The client, as often as it
/// likes: Execute, a format of `wxIPCFormat`, a size, the data. At the end: Disconnect. Sizes have
/// four bytes, the least significant first.
namespace Toolkit::IPCWire {

constexpr char c_execute = 1;
constexpr char c_connect = 10;
constexpr char c_disconnect = 11;

constexpr std::size_t c_sizeLength = 4;

/// The limit of a topic in bytes, and so of the UTF-8 form of every text.
constexpr std::size_t c_longestTopic = std::size_t{16} << 20;

/// As many wide characters as such a topic may have, and their terminator.
constexpr std::size_t c_longestData = (c_longestTopic + 1) * sizeof(wchar_t);

inline void AppendSize(std::string& bytes, std::size_t size)
{
    for (std::size_t i = 0; i < c_sizeLength; ++i)
        bytes.push_back(static_cast<char>(size >> (8 * i)));
}

inline std::size_t ReadSize(const char* bytes)
{
    std::size_t size = 0;
    for (std::size_t i = c_sizeLength; i > 0; --i)
        size = size << 8 | static_cast<unsigned char>(bytes[i - 1]);
    return size;
}

} // namespace Toolkit::IPCWire
