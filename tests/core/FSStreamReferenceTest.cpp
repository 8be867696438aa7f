// Writes random sequences of items, compares the files with bytes packed by hand, and reads them
// back. Also reads the file of one such sequence, truncated at every byte.

#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/StreamResult.h"

#include "support/RandomText.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace Toolkit {
namespace {

using TestSupport::RandomText;
using TestSupport::TempDir;
using Wide = TString<wchar_t>;
using Item = std::variant<unsigned int, std::wstring, std::string>;

void PackNumber(std::string& bytes, unsigned int value)
{
    for (unsigned int index = 0; index < 4; ++index) {
        const unsigned int shift = std::endian::native == std::endian::little ? index : 3 - index;
        bytes.push_back(static_cast<char>(value >> (8 * shift)));
    }
}

// Packs items as Writer does. Writer stores a block as a Bytes object, so its size comes first.
struct Packer {
    void operator()(unsigned int value) { PackNumber(bytes, value); }

    void operator()(const std::wstring& text)
    {
        PackNumber(bytes, static_cast<unsigned int>(text.size() * 4));
        for (const wchar_t character : text)
            PackNumber(bytes, static_cast<unsigned int>(character));
    }

    void operator()(const std::string& block)
    {
        PackNumber(bytes, static_cast<unsigned int>(block.size()));
        bytes += block;
    }

    std::string bytes;
};

struct Writer {
    unsigned int operator()(unsigned int value) { return stream.Write(value); }
    unsigned int operator()(const std::wstring& text) { return stream.Write(Wide(text)); }

    unsigned int operator()(const std::string& block)
    {
        const auto* const data = reinterpret_cast<const unsigned char*>(block.data());
        return Bytes(data, static_cast<unsigned int>(block.size())).Serialize(stream);
    }

    FSStream& stream;
};

// Reads an item of the same type as `expected`, compares the two and returns the result code.
struct Reader {
    unsigned int operator()(unsigned int expected)
    {
        unsigned int value = 0;
        const unsigned int result = stream.Read(value);
        EXPECT_TRUE(StreamResult::Failed(result) || value == expected);
        return result;
    }

    unsigned int operator()(const std::wstring& expected)
    {
        Wide text;
        const unsigned int result = stream.Read(text);
        EXPECT_EQ(text, StreamResult::Failed(result) ? L"" : expected);
        return result;
    }

    unsigned int operator()(const std::string& expected)
    {
        Bytes bytes;
        const unsigned int result = bytes.Deserialize(stream);
        unsigned char* copy = nullptr;
        unsigned int size = 0;
        bytes.GetBytes(&copy, &size);
        const std::string block(reinterpret_cast<const char*>(copy), size);
        delete[] copy;
        EXPECT_TRUE(StreamResult::Failed(result) || block == expected);
        return result;
    }

    FSStream& stream;
};

std::vector<Item> RandomItems(RandomText& random)
{
    std::vector<Item> items;
    for (int count = random.Number(1, 12); count > 0; --count) {
        switch (random.Number(0, 2)) {
        case 0:
            items.emplace_back(random.Number(0u, 0xFFFFFFFFu));
            break;
        case 1:
            items.emplace_back(random.Text(std::wstring(L"aé\u20AC\U0010FFFF"), 40));
            break;
        default:
            items.emplace_back("-" + random.Text(std::string("\x01\0\xFF\n", 4), 100));
        }
    }
    return items;
}

TEST(FSStreamReferenceTest, WritesRandomItemsLikeAHandWrittenPackerAndReadsThemBack)
{
    const TempDir directory;
    RandomText random(20240115);
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(round);
        const std::vector<Item> items = RandomItems(random);
        FSStream output(directory.File(L"items"), FSStream::OpenWrite);
        Packer packer;
        for (const Item& item : items) {
            std::visit(packer, item);
            EXPECT_FALSE(StreamResult::Failed(std::visit(Writer{output}, item)));
        }
        ASSERT_EQ(directory.ReadFile(L"items"), packer.bytes);
        ASSERT_EQ(output.Length(), packer.bytes.size());

        FSStream input(directory.File(L"items"), FSStream::OpenRead);
        for (const Item& item : items)
            EXPECT_FALSE(StreamResult::Failed(std::visit(Reader{input}, item)));
    }
}

TEST(FSStreamReferenceTest, FailsAtTheItemWhereAFileIsTruncated)
{
    const TempDir directory;
    RandomText random(20240116);
    const std::vector<Item> items = RandomItems(random);
    Packer packer;
    std::vector<std::size_t> ends;
    for (const Item& item : items) {
        std::visit(packer, item);
        ends.push_back(packer.bytes.size());
    }

    for (std::size_t length = 0; length < packer.bytes.size(); ++length) {
        SCOPED_TRACE(length);
        FSStream input(directory.WriteFile(L"cut", packer.bytes.substr(0, length)),
                       FSStream::OpenRead);
        std::size_t index = 0;
        for (; ends[index] <= length; ++index)
            EXPECT_FALSE(StreamResult::Failed(std::visit(Reader{input}, items[index])));
        EXPECT_TRUE(StreamResult::Failed(std::visit(Reader{input}, items[index])));
    }
}

} // namespace
} // namespace Toolkit
