// Items read from a hostile file equal those decoded by hand, or reading them fails with the code
// for that kind of item, whatever sizes the file claims.

#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/StreamResult.h"
#include "toolkit/encoding/UTF8.h"

#include "support/Input.h"
#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace Toolkit;

// A file without a name, opened through its descriptor.
class MemoryFile {
public:
    explicit MemoryFile(const std::string& bytes) : m_descriptor(::memfd_create("hostile", 0))
    {
        Require(::write(m_descriptor, bytes.data(), bytes.size()) ==
                static_cast<ssize_t>(bytes.size()));
    }
    ~MemoryFile() { ::close(m_descriptor); }

    TString<wchar_t> Path() const
    {
        return UTF8::ToUNICODE(std::string("/proc/self/fd/" + std::to_string(m_descriptor)));
    }

private:
    int m_descriptor;
};

// Reads items with the stream and decodes the same bytes by hand.
class Comparison {
public:
    explicit Comparison(const std::string& bytes)
        : m_file(bytes), m_stream(m_file.Path(), FSStream::OpenRead), m_remaining(bytes)
    {
        Require(m_stream.Length() == bytes.size());
    }

    void ReadInteger()
    {
        unsigned int value = 0;
        unsigned int expected = 0;
        const bool isComplete = DecodeInteger(expected);
        Require(m_stream.Read(value) == (isComplete ? StreamResult::Ok : StreamResult::DataFailed));
        Require(!isComplete || value == expected);
    }

    void ReadBlock(unsigned int size)
    {
        std::string block(size, '\0');
        const std::string expected = DecodeBytes(size);
        const bool isComplete = expected.size() == size;
        Require(m_stream.Read(block.data(), size) ==
                (isComplete ? StreamResult::Ok : StreamResult::DataFailed));
        Require(block.compare(0, expected.size(), expected) == 0);
    }

    void ReadString()
    {
        TString<wchar_t> text = L"before";
        const unsigned int result = m_stream.Read(text);
        unsigned int size = 0;
        if (!DecodeInteger(size)) {
            Require(result == StreamResult::ReadPrefixFailed && text == L"before");
        } else if (size == 0) {
            Require(result == StreamResult::Nothing && text == L"before");
        } else if (const std::string bytes = DecodeBytes(size); bytes.size() < size) {
            Require(result == StreamResult::DataFailed && text == L"before");
        } else {
            std::wstring expected(size / 4, L'\0');
            std::memcpy(expected.data(), bytes.data(), expected.size() * 4);
            Require(result == StreamResult::Ok && text == expected.c_str());
        }
    }

    void ReadBytes()
    {
        Bytes bytes;
        const unsigned int result = bytes.Deserialize(m_stream);
        unsigned int size = 0;
        const bool hasSize = DecodeInteger(size);
        const std::string expected = hasSize ? DecodeBytes(size) : "";
        const bool isComplete = hasSize && expected.size() == size;
        const std::string contents = GetContents(bytes);
        Require(result == (isComplete ? StreamResult::Ok : StreamResult::DataFailed));
        Require(contents.compare(0, expected.size(), expected) == 0);
        // If the file claims a larger size, Deserialize() does not trust it.
        constexpr std::size_t trustedSize = 65536;
        Require(isComplete ? contents == expected
                           : contents.size() <= std::max(trustedSize, 2 * expected.size()));
    }

private:
    static std::string GetContents(const Bytes& bytes)
    {
        unsigned char* copy = nullptr;
        unsigned int size = 0;
        bytes.GetBytes(&copy, &size);
        const std::string contents(reinterpret_cast<const char*>(copy), size);
        delete[] copy;
        return contents;
    }

    std::string DecodeBytes(std::size_t size)
    {
        const std::string bytes = m_remaining.substr(0, size);
        m_remaining.erase(0, size);
        return bytes;
    }

    bool DecodeInteger(unsigned int& value)
    {
        const std::string bytes = DecodeBytes(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return bytes.size() == sizeof value;
    }

    MemoryFile m_file;
    FSStream m_stream;
    std::string m_remaining;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The input is the number of items, a byte for each, and the file. The lower two bits of the
    // byte are the kind of the item, the others the length of a block.
    constexpr unsigned int maxItems = 16;
    Input input(data, size);
    std::string kinds;
    for (unsigned int count = input.ReadByte() % maxItems; count > 0; --count)
        kinds.push_back(static_cast<char>(input.ReadByte()));

    Comparison comparison(input.ReadRest());
    for (const char kind : kinds) {
        switch (kind & 3) {
        case 0:
            comparison.ReadInteger();
            break;
        case 1:
            comparison.ReadBlock(static_cast<unsigned char>(kind) >> 2);
            break;
        case 2:
            comparison.ReadString();
            break;
        default:
            comparison.ReadBytes();
        }
    }
    return 0;
}
