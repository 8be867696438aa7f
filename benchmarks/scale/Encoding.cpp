#include "toolkit/encoding/Base64.h"
#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/UTF7.h"
#include "toolkit/encoding/UTF8.h"

#include <cstddef>
#include <memory>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

// Returns an operation that calls `use` with the result of `encode` for a string in which every
// tenth character is not ASCII.
template <typename Encode, typename Use>
Operation MakeOperationOnEncoded(const char* name, Encode encode, Use use)
{
    return {name, c_sizes, [encode, use](int length) -> Run {
                Text text = MakeWords<wchar_t>(length);
                for (std::size_t i = 0; i < text.size(); i += 10)
                    text[i] = L'\u00E9';
                const auto encoded = std::make_shared<decltype(encode(text))>(encode(text));
                return [encoded, use] { use(*encoded); };
            }};
}

// Returns an operation that calls `use` with the string itself.
template <typename Use>
Operation MakeOperationOnText(const char* name, Use use)
{
    return MakeOperationOnEncoded(
        name, [](const Text& text) { return text; }, use);
}

} // namespace

void AddEncodingOperations(Operations& operations)
{
    operations.push_back(MakeOperationOnText(
        "UTF8 ToUTF8", [](const Text& text) { Require(UTF8::ToUTF8(text).size() > text.size()); }));
    operations.push_back(
        MakeOperationOnEncoded("UTF8 ToUNICODE", UTF8::ToUTF8, [](const TString<char>& bytes) {
            Require(!UTF8::ToUNICODE(bytes).empty());
        }));
    operations.push_back(MakeOperationOnText(
        "B64 ToB64", [](const Text& text) { Require(B64::ToB64(text).IsValid()); }));
    operations.push_back(
        MakeOperationOnEncoded("B64 ToUNICODE", B64::ToB64, [](const smart_ptr<Bytes>& bytes) {
            Require(!B64::ToUNICODE(bytes).empty());
        }));
    operations.push_back(MakeOperationOnText(
        "QP ToQP", [](const Text& text) { Require(QP::ToQP(text).size() > text.size()); }));
    operations.push_back(MakeOperationOnEncoded(
        "QP ToUNICODE", [](const Text& text) { return QP::ToQP(text); },
        [](const Text& text) { Require(!QP::ToUNICODE(text).empty()); }));
    operations.push_back(MakeOperationOnEncoded(
        "UTF7 ToUTF7", [](const Text& text) { return Text(MakeWords<wchar_t>(int(text.size()))); },
        [](const Text& text) { Require(UTF7::ToUTF7(text).size() == text.size()); }));
}

} // namespace Scale
