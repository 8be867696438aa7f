#include "toolkit/encoding/UTF8.h"

#include <benchmark/benchmark.h>
#include <unicode/ustring.h>
#include <wx/string.h>

#include <boost/locale/encoding_utf.hpp>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iconv.h>
#include <iterator>
#include <string>

namespace Toolkit {
namespace {

enum Script { Ascii, Latin, Cjk };

// Returns a string in the script of the first argument. In UTF-8, it has about as many bytes as the
// second argument says.
std::wstring MakeWideText(benchmark::State& state)
{
    constexpr const wchar_t* samples[] = {
        L"The quick brown fox jumps over the lazy dog. ",
        L"No\u00EBl \u00E0 l'\u00EEle : d\u00E9j\u00E0 vu, pr\u00EAt-\u00E0-porter, gar\u00E7on; "
        L"stra\u00DFe. ",
        L"\u5929\u5730\u7384\u9EC3\u5B87\u5B99\u6D2A\u8352\u65E5\u6708\u76C8\u6603\uFF0C"};
    constexpr std::size_t bytesPerSample[] = {45, 65, 39};
    const auto script = static_cast<std::size_t>(state.range(0));
    const auto byteCount = static_cast<std::size_t>(state.range(1));
    std::wstring text;
    for (std::size_t bytes = 0; bytes < byteCount; bytes += bytesPerSample[script])
        text += samples[script];
    return text;
}

std::string EncodeUtf8(const std::wstring& text)
{
    return boost::locale::conv::utf_to_utf<char>(text);
}

// Checks the result of a conversion once, then measures the conversion.
template <typename Convert>
void Decode(benchmark::State& state, const Convert& convert)
{
    const std::wstring text = MakeWideText(state);
    const std::string bytes = EncodeUtf8(text);
    if (convert(TString<char>(bytes)) != text)
        state.SkipWithError("wrong text");
    const TString<char> input = bytes;
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(input));
    state.SetBytesProcessed(state.iterations() * std::ssize(bytes));
}

template <typename Convert>
void Encode(benchmark::State& state, const Convert& convert)
{
    const TString<wchar_t> text = MakeWideText(state);
    const std::string bytes = EncodeUtf8(text);
    if (convert(text) != bytes)
        state.SkipWithError("wrong bytes");
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(text));
    state.SetBytesProcessed(state.iterations() * std::ssize(bytes));
}

void AddInputs(benchmark::internal::Benchmark* benchmark)
{
    benchmark->ArgNames({"script", "bytes"})
        ->ArgsProduct({{Ascii, Latin, Cjk}, {100, 10'000, 1'000'000}});
}

class Converter {
public:
    Converter(const char* to, const char* from) : m_handle(::iconv_open(to, from)) {}
    ~Converter() { ::iconv_close(m_handle); }

    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // Converts with iconv() and returns the number of unused bytes of the output.
    std::size_t Convert(const void* input, std::size_t inputLength, void* output,
                        std::size_t outputLength)
    {
        char* from = const_cast<char*>(static_cast<const char*>(input));
        char* to = static_cast<char*>(output);
        ::iconv(m_handle, &from, &inputLength, &to, &outputLength);
        return outputLength;
    }

private:
    iconv_t m_handle;
};

void BM_Utf8ToWide_Toolkit(benchmark::State& state)
{
    Decode(state, UTF8::ToUNICODE);
}
BENCHMARK(BM_Utf8ToWide_Toolkit)->Apply(AddInputs);

void BM_Utf8ToWide_wxString(benchmark::State& state)
{
    Decode(state,
           [](const std::string& bytes) { return wxString::FromUTF8(bytes.data(), bytes.size()); });
}
BENCHMARK(BM_Utf8ToWide_wxString)->Apply(AddInputs);

void BM_Utf8ToWide_iconv(benchmark::State& state)
{
    Converter converter("WCHAR_T", "UTF-8");
    Decode(state, [&converter](const std::string& bytes) {
        std::wstring text(bytes.size(), L'\0');
        const std::size_t unusedBytes = converter.Convert(bytes.data(), bytes.size(), text.data(),
                                                          text.size() * sizeof(wchar_t));
        text.resize(text.size() - unusedBytes / sizeof(wchar_t));
        return text;
    });
}
BENCHMARK(BM_Utf8ToWide_iconv)->Apply(AddInputs);

void BM_Utf8ToWide_mbstowcs(benchmark::State& state)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    Decode(state, [](const std::string& bytes) {
        std::wstring text(bytes.size(), L'\0');
        text.resize(std::mbstowcs(text.data(), bytes.c_str(), text.size()));
        return text;
    });
    std::setlocale(LC_ALL, "C");
}
BENCHMARK(BM_Utf8ToWide_mbstowcs)->Apply(AddInputs);

void BM_Utf8ToWide_ICU(benchmark::State& state)
{
    Decode(state, [](const std::string& bytes) {
        UErrorCode error = U_ZERO_ERROR;
        std::u16string units(bytes.size(), u'\0');
        std::int32_t length = 0;
        u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                      static_cast<std::int32_t>(bytes.size()), &error);
        std::wstring text(static_cast<std::size_t>(length), L'\0');
        u_strToWCS(text.data(), length, &length, units.data(), length, &error);
        text.resize(static_cast<std::size_t>(length));
        return text;
    });
}
BENCHMARK(BM_Utf8ToWide_ICU)->Apply(AddInputs);

void BM_Utf8ToWide_BoostLocale(benchmark::State& state)
{
    Decode(state, [](const std::string& bytes) {
        return boost::locale::conv::utf_to_utf<wchar_t>(bytes);
    });
}
BENCHMARK(BM_Utf8ToWide_BoostLocale)->Apply(AddInputs);

void BM_WideToUtf8_Toolkit(benchmark::State& state)
{
    Encode(state, UTF8::ToUTF8);
}
BENCHMARK(BM_WideToUtf8_Toolkit)->Apply(AddInputs);

void BM_WideToUtf8_wxString(benchmark::State& state)
{
    const wxString text = MakeWideText(state);
    Encode(state, [&text](const std::wstring&) { return text.utf8_string(); });
}
BENCHMARK(BM_WideToUtf8_wxString)->Apply(AddInputs);

void BM_WideToUtf8_iconv(benchmark::State& state)
{
    Converter converter("UTF-8", "WCHAR_T");
    Encode(state, [&converter](const std::wstring& text) {
        std::string bytes(3 * text.size(), '\0');
        bytes.resize(bytes.size() - converter.Convert(text.data(), text.size() * sizeof(wchar_t),
                                                      bytes.data(), bytes.size()));
        return bytes;
    });
}
BENCHMARK(BM_WideToUtf8_iconv)->Apply(AddInputs);

void BM_WideToUtf8_wcstombs(benchmark::State& state)
{
    std::setlocale(LC_ALL, "C.UTF-8");
    Encode(state, [](const std::wstring& text) {
        std::string bytes(3 * text.size(), '\0');
        bytes.resize(std::wcstombs(bytes.data(), text.c_str(), bytes.size()));
        return bytes;
    });
    std::setlocale(LC_ALL, "C");
}
BENCHMARK(BM_WideToUtf8_wcstombs)->Apply(AddInputs);

void BM_WideToUtf8_ICU(benchmark::State& state)
{
    Encode(state, [](const std::wstring& text) {
        UErrorCode error = U_ZERO_ERROR;
        std::u16string units(text.size(), u'\0');
        std::int32_t length = 0;
        u_strFromWCS(units.data(), static_cast<std::int32_t>(units.size()), &length, text.data(),
                     static_cast<std::int32_t>(text.size()), &error);
        std::string bytes(3 * static_cast<std::size_t>(length), '\0');
        u_strToUTF8(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, units.data(),
                    length, &error);
        bytes.resize(static_cast<std::size_t>(length));
        return bytes;
    });
}
BENCHMARK(BM_WideToUtf8_ICU)->Apply(AddInputs);

void BM_WideToUtf8_BoostLocale(benchmark::State& state)
{
    Encode(state,
           [](const std::wstring& text) { return boost::locale::conv::utf_to_utf<char>(text); });
}
BENCHMARK(BM_WideToUtf8_BoostLocale)->Apply(AddInputs);

} // namespace
} // namespace Toolkit
