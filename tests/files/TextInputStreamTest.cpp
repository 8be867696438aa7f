#include "toolkit/files/TextInputStream.h"

#include <gtest/gtest.h>
#include <wx/mstream.h>
#include <wx/txtstrm.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

// Returns the first `count` words of `bytes`.
std::vector<std::wstring> ReadWords(const std::string& bytes, std::size_t count)
{
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    TextInputStream stream(new wxTextInputStream(memory));
    std::vector<std::wstring> words;
    while (words.size() < count) {
        TString<wchar_t> word = L"old";
        stream >> word;
        words.push_back(word);
    }
    return words;
}

TEST(TextInputStreamTest, SeparatesWordsAtWhiteSpace)
{
    const std::pair<std::string, std::vector<std::wstring>> cases[] = {
        {"one two", {L"one", L"two", L""}},
        {"one\ttwo\nthree\r\nfour", {L"one", L"two", L"three", L"four", L""}},
        {"one\n", {L"one", L""}},
        {"", {L"", L""}}};
    for (const auto& [bytes, expected] : cases) {
        SCOPED_TRACE(bytes);
        EXPECT_EQ(ReadWords(bytes, expected.size()), expected);
    }
}

TEST(TextInputStreamTest, DecodesWordsFromUtf8)
{
    const std::vector<std::wstring> expected = {L"caf\u00E9", L"\u6587\u5B57", L"\U0001F600"};

    EXPECT_EQ(ReadWords("caf\xC3\xA9 \xE6\x96\x87\xE5\xAD\x97 \xF0\x9F\x98\x80", 3), expected);
}

TEST(TextInputStreamTest, ChainsReads)
{
    const std::string bytes = "one two";
    wxMemoryInputStream memory(bytes.data(), bytes.size());
    TextInputStream stream(new wxTextInputStream(memory));
    TString<wchar_t> first;
    TString<wchar_t> second;

    EXPECT_EQ(&(stream >> first >> second), &stream);
    EXPECT_EQ(first, L"one");
    EXPECT_EQ(second, L"two");
}

TEST(TextInputStreamTest, ReadsEmptyWordsWithoutATextStream)
{
    TextInputStream stream(nullptr);
    TString<wchar_t> word = L"old";

    stream >> word;
    EXPECT_EQ(word, L"");
}

TEST(TextInputStreamTest, DeletesTheTextStreamOnceThroughTheBase)
{
    // AddressSanitizer detects a double deletion and a deletion through the wrong type.
    wxMemoryInputStream memory("word", 4);
    std::unique_ptr<InputStream> stream =
        std::make_unique<TextInputStream>(new wxTextInputStream(memory));

    stream.reset();
    char byte = 0;
    EXPECT_TRUE(memory.ReadAll(&byte, 1));
    EXPECT_EQ(byte, 'w');
}

} // namespace
} // namespace Toolkit
