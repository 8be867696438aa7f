#include "toolkit/files/InputStream.h"

#include <gtest/gtest.h>
#include <wx/mstream.h>

namespace Toolkit {
namespace {

// Counts its destructions.
class CountingStream : public wxMemoryInputStream {
public:
    explicit CountingStream(int& destructions)
        : wxMemoryInputStream("", 0), m_destructions(destructions)
    {
    }
    ~CountingStream() override { ++m_destructions; }

private:
    int& m_destructions;
};

// A reader like those that programs derive: it uses the stream that it owns, and may release it.
class Reader : public InputStream {
public:
    using InputStream::InputStream;

    void* Owned() const { return m_stream; }
    void Forget() { m_stream = nullptr; }
};

TEST(InputStreamTest, DeletesTheStreamOnceInItsDestructor)
{
    int destructions = 0;
    {
        const InputStream stream(new CountingStream(destructions));
        EXPECT_EQ(destructions, 0);
    }

    EXPECT_EQ(destructions, 1);
}

TEST(InputStreamTest, DestroysTheDerivedClassThroughTheBase)
{
    int destructions = 0;
    InputStream* const stream = new Reader(new CountingStream(destructions));

    delete stream;
    EXPECT_EQ(destructions, 1);
}

TEST(InputStreamTest, MayHaveNoStream)
{
    const Reader stream(nullptr);

    EXPECT_EQ(stream.Owned(), nullptr);
}

TEST(InputStreamTest, LetsADerivedClassTakeTheStreamAway)
{
    int destructions = 0;
    CountingStream kept(destructions);
    {
        Reader stream(&kept);
        EXPECT_EQ(stream.Owned(), static_cast<wxInputStream*>(&kept));
        stream.Forget();
    }

    EXPECT_EQ(destructions, 0);
}

} // namespace
} // namespace Toolkit
