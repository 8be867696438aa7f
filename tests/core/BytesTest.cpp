#include "toolkit/core/Bytes.h"

#include "toolkit/core/IStream.h"
#include "toolkit/core/StreamResult.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using Contents = std::optional<std::string>;

std::string Packed(unsigned int value)
{
    std::string bytes(sizeof value, '\0');
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

const unsigned char* Raw(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

// Returns the bytes from GetBytes(); `std::nullopt` if it fails.
Contents ContentsOf(const Bytes& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int size = 0;
    if (!bytes.GetBytes(&copy, &size))
        return std::nullopt;
    const std::string contents(reinterpret_cast<const char*>(copy), size);
    delete[] copy;
    return contents;
}

// An in-memory stream that records its calls. Call number `failAt`, counted from 1, fails.
class MemoryStream : public IStream {
public:
    explicit MemoryStream(const std::string& bytes = "") : contents(bytes) {}

    unsigned int Write(const TString<wchar_t>&) override { return RecordCall("string", 0); }

    unsigned int Write(unsigned int value) override
    {
        contents += Packed(value);
        return RecordCall("integer", sizeof value);
    }

    unsigned int Write(const void* data, unsigned int size) override
    {
        contents.append(static_cast<const char*>(data), size);
        return RecordCall("block", size);
    }

    unsigned int Read(TString<wchar_t>&) override { return RecordCall("string", 0); }
    unsigned int Read(unsigned int& value) override
    {
        return ReadBytes("integer", &value, sizeof value);
    }
    unsigned int Read(void* data, unsigned int size) override
    {
        return ReadBytes("block", data, size);
    }
    unsigned int Length() const override { return static_cast<unsigned int>(contents.size()); }

    std::string contents;
    std::vector<std::string> calls;
    unsigned int largestSize = 0;
    std::size_t failAt = 0;
    unsigned int success = 0;

private:
    unsigned int RecordCall(const std::string& call, unsigned int size)
    {
        calls.push_back(call);
        largestSize = std::max(largestSize, size);
        return calls.size() == failAt ? 0x10000077u : success;
    }

    unsigned int ReadBytes(const std::string& call, void* data, unsigned int size)
    {
        const std::size_t count = std::min<std::size_t>(size, contents.size() - m_position);
        std::memcpy(data, contents.data() + m_position, count);
        m_position += count;
        const unsigned int result = RecordCall(call, size);
        return count < size ? 0x10000003u : result;
    }

    std::size_t m_position = 0;
};

TEST(BytesTest, CopiesTheBytesItIsConstructedFrom)
{
    std::string source("a\0b", 3);
    const Bytes bytes(Raw(source), 3);

    source = "xyz";

    EXPECT_EQ(ContentsOf(bytes), std::string("a\0b", 3));
}

TEST(BytesTest, IsEmptyWithoutBytes)
{
    const unsigned char byte = 1;

    EXPECT_EQ(ContentsOf(Bytes()), std::nullopt);
    EXPECT_EQ(ContentsOf(Bytes(nullptr, 5)), std::nullopt);
    EXPECT_EQ(ContentsOf(Bytes(&byte, 0)), std::nullopt);
}

TEST(BytesTest, LeavesTheCallersVariablesAloneWhenEmpty)
{
    unsigned char byte = 1;
    unsigned char* out = &byte;
    unsigned int size = 7;

    EXPECT_FALSE(Bytes().GetBytes(&out, &size));
    EXPECT_EQ(out, &byte);
    EXPECT_EQ(size, 7u);
}

TEST(BytesTest, ReplacesTheContentsInSetBytes)
{
    Bytes bytes(Raw("before"), 6);

    EXPECT_TRUE(bytes.SetBytes(Raw("new"), 3));
    EXPECT_EQ(ContentsOf(bytes), "new");
}

TEST(BytesTest, CannotBeEmptiedBySetBytes)
{
    Bytes bytes(Raw("before"), 6);

    EXPECT_FALSE(bytes.SetBytes(nullptr, 0));
    EXPECT_FALSE(bytes.SetBytes(nullptr, 3));
    EXPECT_FALSE(bytes.SetBytes(Raw("x"), 0));
    EXPECT_EQ(ContentsOf(bytes), "before");
}

TEST(BytesTest, FreesThePreviousCopyInGetBytes)
{
    Bytes bytes(Raw("abc"), 3);
    unsigned char* out = nullptr;
    unsigned int size = 0;

    EXPECT_TRUE(bytes.GetBytes(&out, &size));
    bytes.SetBytes(Raw("defg"), 4);
    EXPECT_TRUE(bytes.GetBytes(&out, &size));

    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), size), "defg");
    delete[] out;
}

TEST(BytesTest, RejectsNullPointersAndASizeOfZeroInCopyBytes)
{
    const Bytes bytes;
    unsigned char source = 1;
    unsigned char* target = nullptr;
    unsigned int size = 7;

    EXPECT_FALSE(bytes.CopyBytes(nullptr, 1, &target, &size));
    EXPECT_FALSE(bytes.CopyBytes(&source, 0, &target, &size));
    EXPECT_FALSE(bytes.CopyBytes(&source, 1, nullptr, &size));
    EXPECT_FALSE(bytes.CopyBytes(&source, 1, &target, nullptr));
    EXPECT_EQ(target, nullptr);
    EXPECT_EQ(size, 7u);
}

TEST(BytesTest, FailsToCopyWhenOutOfMemory)
{
    const std::string source(1000, 'x');
    Bytes bytes(Raw("before"), 6);
    unsigned char* out = new unsigned char[1];
    unsigned int size = 1;
    {
        const TestSupport::AllocationLimit limit(500);
        EXPECT_FALSE(bytes.SetBytes(Raw(source), 1000));
        EXPECT_FALSE(bytes.CopyBytes(Raw(source), 1000, &out, &size));
    }
    EXPECT_EQ(ContentsOf(bytes), std::nullopt);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(size, 0u);
}

TEST(BytesTest, ReadsNoBlockWhenOutOfMemory)
{
    MemoryStream stream(Packed(1000) + std::string(1000, 'x'));
    Bytes bytes(Raw("before"), 6);
    {
        const TestSupport::AllocationLimit limit(500);
        EXPECT_EQ(bytes.Deserialize(stream), 0x10000003u);
    }
    EXPECT_EQ(ContentsOf(bytes), std::nullopt);
    EXPECT_THAT(stream.calls, ElementsAre("integer"));
}

TEST(BytesTest, SerializesTheSizeAndTheBytes)
{
    MemoryStream stream;

    EXPECT_EQ(Bytes(Raw("abc"), 3).Serialize(stream), 0u);
    EXPECT_EQ(stream.contents, Packed(3) + "abc");
    EXPECT_THAT(stream.calls, ElementsAre("integer", "block"));
}

TEST(BytesTest, WritesNothingWhenEmpty)
{
    MemoryStream stream;

    EXPECT_EQ(Bytes().Serialize(stream), 0x01000000u);
    EXPECT_TRUE(stream.calls.empty());
}

TEST(BytesTest, StopsSerializingAtTheFirstFailure)
{
    for (const std::size_t call : {1u, 2u}) {
        SCOPED_TRACE(call);
        MemoryStream stream;
        stream.failAt = call;

        EXPECT_EQ(Bytes(Raw("abc"), 3).Serialize(stream), 0x10000002u);
        EXPECT_EQ(stream.calls.size(), call);
    }
}

TEST(BytesTest, DeserializesTheSizeAndTheBytes)
{
    MemoryStream stream(Packed(3) + "abcd");
    Bytes bytes;

    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), "abc");
    EXPECT_THAT(stream.calls, ElementsAre("integer", "block"));
}

TEST(BytesTest, ReplacesTheContentsInDeserialize)
{
    MemoryStream stream(Packed(2) + "ab");
    Bytes bytes(Raw("before"), 6);

    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), "ab");
}

TEST(BytesTest, IsEmptiedByAStoredSizeOfZero)
{
    MemoryStream stream(Packed(0));
    Bytes bytes(Raw("before"), 6);

    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), std::nullopt);
    EXPECT_TRUE(bytes.SetBytes(Raw("again"), 5));
    EXPECT_EQ(ContentsOf(bytes), "again");
}

TEST(BytesTest, KeepsTheContentsWhenTheSizeCannotBeRead)
{
    for (const char* contents : {"", "abc"}) {
        SCOPED_TRACE(contents);
        MemoryStream stream(contents);
        Bytes bytes(Raw("before"), 6);

        EXPECT_EQ(bytes.Deserialize(stream), 0x10000003u);
        EXPECT_EQ(ContentsOf(bytes), "before");
    }
}

TEST(BytesTest, KeepsTheBytesReadFromATruncatedBlock)
{
    MemoryStream stream(Packed(6) + "abcd");
    Bytes bytes;

    EXPECT_EQ(bytes.Deserialize(stream), 0x10000003u);
    EXPECT_EQ(ContentsOf(bytes), std::string("abcd\0\0", 6));
}

TEST(BytesTest, ReturnsTheSameCodeForEveryFailureToDeserialize)
{
    for (const std::size_t call : {1u, 2u}) {
        SCOPED_TRACE(call);
        MemoryStream stream(Packed(3) + "abc");
        stream.failAt = call;

        EXPECT_EQ(Bytes().Deserialize(stream), 0x10000003u);
        EXPECT_EQ(stream.calls.size(), call);
    }
}

TEST(BytesTest, TreatsCodesWithoutTheFailureBitAsSuccess)
{
    MemoryStream stream;
    stream.success = 0xEFFFFFFF;
    Bytes bytes;

    EXPECT_EQ(Bytes(Raw("abc"), 3).Serialize(stream), 0u);
    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), "abc");
}

TEST(BytesTest, ReadsALongBlockInOneCall)
{
    const std::string block(1000000, 'x');
    MemoryStream stream(Packed(1000000) + block);
    Bytes bytes;

    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), block);
    EXPECT_EQ(stream.calls.size(), 2u);
}

TEST(BytesTest, DoesNotTrustASizeLargerThanTheStream)
{
    for (const unsigned int size : {200001u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(size);
        MemoryStream stream(Packed(size) + std::string(200000, 'x'));
        Bytes bytes;

        EXPECT_EQ(bytes.Deserialize(stream), 0x10000003u);
        EXPECT_EQ(ContentsOf(bytes)->substr(0, 200000), std::string(200000, 'x'));
        EXPECT_LE(ContentsOf(bytes)->size(), 400000u);
        EXPECT_LE(stream.largestSize, 400000u);
    }
}

// A stream whose length is unknown: Length() returns 0.
class StreamOfUnknownLength : public MemoryStream {
public:
    using MemoryStream::MemoryStream;
    unsigned int Length() const override { return 0; }
};

TEST(BytesTest, ReadsAStreamThatDeliversMoreThanItsLength)
{
    const std::string block(1000000, 'x');
    StreamOfUnknownLength stream(Packed(1000000) + block);
    Bytes bytes;

    EXPECT_EQ(bytes.Deserialize(stream), 0u);
    EXPECT_EQ(ContentsOf(bytes), block);
}

} // namespace
} // namespace Toolkit
