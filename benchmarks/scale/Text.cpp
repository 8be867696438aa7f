#include "toolkit/core/Bytes.h"
#include "toolkit/core/FSStream.h"

#include <memory>
#include <string>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using Toolkit::Bytes;
using Toolkit::FSStream;
using Text = TString<wchar_t>;

// Returns an operation that calls `use` with a string of words.
template <typename Use>
Operation MakeOperationOnText(const char* name, Use use)
{
    return {name, c_sizes, [use](int length) -> Run {
                const auto text = std::make_shared<Text>(MakeWords<wchar_t>(length));
                return [text, use] { use(*text); };
            }};
}

void ReplaceSpaces(const Text& text)
{
    Text copy = text;
    copy.Replace(L" ", L"--");
    Require(copy.size() > text.size());
}

void Tokenize(const Text& text)
{
    std::vector<Text> tokens;
    text.GetTokens(L" ", tokens, true);
    Require(tokens.size() >= text.size() / 6);
}

void StoreBytes(const Text& text)
{
    Bytes bytes;
    Require(bytes.SetBytes(reinterpret_cast<const unsigned char*>(text.data()),
                           static_cast<unsigned int>(text.size())));
}

void StoreAndRead(const Text& text)
{
    const Text path = ToWide(GetDirectory() / "stream");
    Text read;
    Require(FSStream(path, FSStream::OpenWrite).Write(text) == 0);
    Require(FSStream(path, FSStream::OpenRead).Read(read) == 0 && read.size() == text.size());
}

} // namespace

void AddTextOperations(Operations& operations)
{
    operations.push_back(MakeOperationOnText("TString compareNoCase", [](const Text& text) {
        Require(text.compareNoCase(Text(text)) == 0);
    }));
    operations.push_back(MakeOperationOnText("TString HasSubstring", [](const Text& text) {
        Require(!text.HasSubstring(L"abcdefghij"));
    }));
    operations.push_back(MakeOperationOnText("TString Trim", [](const Text& text) {
        Require(Text(std::wstring(text.size(), L' ') + L"x").Trim().size() == 1);
    }));
    operations.push_back(MakeOperationOnText(
        "TString ToLower", [](const Text& text) { Require(Text(text).ToLower() == text); }));
    operations.push_back(MakeOperationOnText("TString Replace", ReplaceSpaces));
    operations.push_back(MakeOperationOnText("TString GetTokens", Tokenize));
    operations.push_back(MakeOperationOnText("Bytes SetBytes", StoreBytes));
    operations.push_back(MakeOperationOnText("FSStream Write and Read", StoreAndRead));
}

} // namespace Scale
