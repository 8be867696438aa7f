#include "toolkit/files/InputStream.h"

#include <gtest/gtest.h>
#include <wx/mstream.h>

namespace Toolkit {
namespace {

// Counts destructor calls.
class CountingStream : public wxMemoryInputStream {
public:
    explicit CountingStream(int& destructionCount)
        : wxMemoryInputStream("", 0), m_destructionCount(destructionCount)
    {
    }
    ~CountingStream() override { ++m_destructionCount; }

private:
    int& m_destructionCount;
};

// Like a derived class in a program: accesses the stream and can give up its ownership.
class Reader : public InputStream {
public:
    using InputStream::InputStream;

    void* GetStream() const { return m_stream; }
    void ReleaseStream() { m_stream = nullptr; }
};

TEST(InputStreamTest, DeletesTheStreamOnceInItsDestructor)
{
    int destructionCount = 0;
    {
        const InputStream stream(new CountingStream(destructionCount));
        EXPECT_EQ(destructionCount, 0);
    }

    EXPECT_EQ(destructionCount, 1);
}

TEST(InputStreamTest, DestroysADerivedObjectThroughTheBase)
{
    int destructionCount = 0;
    InputStream* const stream = new Reader(new CountingStream(destructionCount));

    delete stream;
    EXPECT_EQ(destructionCount, 1);
}

TEST(InputStreamTest, AcceptsANullStream)
{
    const Reader stream(nullptr);

    EXPECT_EQ(stream.GetStream(), nullptr);
}

TEST(InputStreamTest, LetsADerivedClassReleaseTheStream)
{
    int destructionCount = 0;
    CountingStream counting(destructionCount);
    {
        Reader stream(&counting);
        EXPECT_EQ(stream.GetStream(), static_cast<wxInputStream*>(&counting));
        stream.ReleaseStream();
    }

    EXPECT_EQ(destructionCount, 0);
}

} // namespace
} // namespace Toolkit
