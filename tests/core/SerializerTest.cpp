#include "toolkit/core/Serializer.h"

#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSInputSerializer.h"
#include "toolkit/core/FSOutputSerializer.h"
#include "toolkit/core/FSStream.h"
#include "toolkit/core/StreamResult.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace Toolkit {
namespace {

using TestSupport::TempDir;
using Wide = TString<wchar_t>;

// An object with an integer, a string and a block. Returns its own codes if the integer or the
// string fails, and the stream's code for the block.
struct Record : ISerialize {
    unsigned int Serialize(IStream& stream) const override
    {
        if (StreamResult::Failed(stream.Write(number)) || StreamResult::Failed(stream.Write(text)))
            return 0x10001001;
        return stream.Write(letters, sizeof letters);
    }

    unsigned int Deserialize(IStream& stream) override
    {
        if (StreamResult::Failed(stream.Read(number)) || StreamResult::Failed(stream.Read(text)))
            return 0x10001002;
        return stream.Read(letters, sizeof letters);
    }

    unsigned int number = 0;
    Wide text;
    char letters[3] = {};
};

class SerializerTest : public testing::Test {
protected:
    TempDir m_directory;
    const Wide m_path = m_directory.File(L"record");
};

TEST_F(SerializerTest, ReadsAnObjectBackFromItsFile)
{
    Record written;
    written.number = 42;
    written.text = L"name";
    written.letters[0] = 'x';

    EXPECT_EQ(FSOutputSerializer(m_path).Serialize(written), StreamResult::Ok);
    Record read;
    EXPECT_EQ(FSInputSerializer(m_path).Deserialize(read), StreamResult::Ok);

    EXPECT_EQ(read.number, 42u);
    EXPECT_EQ(read.text, L"name");
    EXPECT_EQ(read.letters[0], 'x');
}

TEST_F(SerializerTest, StoresSeveralObjectsInARow)
{
    {
        const FSOutputSerializer output(m_path);
        Record record;
        for (record.number = 1; record.number <= 3; ++record.number)
            EXPECT_EQ(output.Serialize(record), StreamResult::Ok);
    }
    FSInputSerializer input(m_path);

    for (unsigned int number = 1; number <= 3; ++number) {
        Record record;
        EXPECT_EQ(input.Deserialize(record), StreamResult::Ok);
        EXPECT_EQ(record.number, number);
    }
}

TEST_F(SerializerTest, ReturnsTheObjectsOwnCodeForAMissingFile)
{
    FSInputSerializer input(m_path);
    Record record;
    Bytes bytes;

    EXPECT_EQ(input.Deserialize(record), 0x10001002u);
    EXPECT_EQ(input.Deserialize(bytes), 0x10000003u);
    EXPECT_EQ(FSOutputSerializer(m_directory.File(L"no/such")).Serialize(record), 0x10001001u);
}

TEST_F(SerializerTest, OpensTheFileInTheGivenMode)
{
    const FSSerializer output(m_path, FSSerializer::OpenWrite);
    const FSSerializer input(m_path, FSSerializer::OpenRead);
    unsigned int value = 0;

    EXPECT_EQ(output.GetStream().Write(7u), StreamResult::Ok);
    EXPECT_EQ(input.GetStream().Read(value), StreamResult::Ok);
    EXPECT_EQ(value, 7u);
    EXPECT_EQ(input.GetStream().Write(7u), StreamResult::WriteIntegerFailed);
}

TEST_F(SerializerTest, ReturnsTheSameFileStreamEveryTime)
{
    const FSOutputSerializer output(m_path);

    EXPECT_EQ(&output.GetStream(), &output.GetStream());
    EXPECT_NE(dynamic_cast<FSStream*>(&output.GetStream()), nullptr);
}

TEST_F(SerializerTest, HasTheModesOfTheStream)
{
    EXPECT_EQ(int{FSSerializer::OpenRead}, 0);
    EXPECT_EQ(int{FSSerializer::OpenWrite}, 1);
    EXPECT_EQ(int{FSStream::OpenRead}, 0);
    EXPECT_EQ(int{FSStream::OpenWrite}, 1);
}

} // namespace
} // namespace Toolkit
