#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/QuotedPrintableCodec.Private.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <gmime/gmime.h>
#include <memory>
#include <string>
#include <string_view>

namespace Toolkit {
namespace {

// Returns a UTF-8 mail text that needs several escapes per line.
std::string MakeMailText(benchmark::State& state)
{
    constexpr const char* sample = "Dear Zo\xC3\xAB, the price was 20 \xE2\x82\xAC = too much; see "
                                   "http://shop.example/?a=1.\n";
    const auto length = static_cast<std::size_t>(state.range(0));
    std::string text;
    while (text.size() < length)
        text += sample;
    return text;
}

std::wstring MakeWideText(benchmark::State& state)
{
    std::wstring text;
    while (text.size() < static_cast<std::size_t>(state.range(0)))
        text += L"Dear Zo\u00EB, the price was 20 \u20AC = too much; see you.\n";
    return text;
}

std::string Encode(const std::string& bytes)
{
    std::string code;
    AppendEncodedQuotedPrintable(code, bytes.data(), bytes.size());
    return code;
}

// Encodes or decodes with GMime, one string for each call of Run().
class Filter {
public:
    explicit Filter(gboolean encodes)
        : m_filter(g_mime_filter_basic_new(GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE, encodes),
                   &g_object_unref)
    {
    }

    // Returns a view that is valid until the next call.
    std::string_view Run(const std::string& in)
    {
        char* out = nullptr;
        std::size_t length = 0;
        std::size_t prespace = 0;
        g_mime_filter_reset(m_filter.get());
        g_mime_filter_complete(m_filter.get(), const_cast<char*>(in.data()), in.size(), 0, &out,
                               &length, &prespace);
        return {out, length};
    }

private:
    std::unique_ptr<GMimeFilter, decltype(&g_object_unref)> m_filter;
};

// Reports a wrong result and sets the throughput.
void Finish(benchmark::State& state, std::size_t byteCount, bool isCorrect)
{
    if (!isCorrect)
        state.SkipWithError("wrong result");
    state.SetBytesProcessed(state.iterations() * static_cast<long>(byteCount));
}

void BM_QuotedEncode_Toolkit(benchmark::State& state)
{
    const std::string bytes = MakeMailText(state);
    std::string code;
    for (auto _ : state)
        code = Encode(bytes);
    Finish(state, bytes.size(), Filter(FALSE).Run(code) == bytes);
}

void BM_QuotedEncode_GMime(benchmark::State& state)
{
    const std::string bytes = MakeMailText(state);
    Filter filter(TRUE);
    std::string_view code;
    for (auto _ : state)
        benchmark::DoNotOptimize(code = filter.Run(bytes));
    Finish(state, bytes.size(), Filter(FALSE).Run(std::string(code)) == bytes);
}

void BM_QuotedDecode_Toolkit(benchmark::State& state)
{
    const std::string expected = MakeMailText(state);
    const std::string code = Encode(expected);
    std::string bytes;
    for (auto _ : state) {
        bytes = std::string();
        AppendDecodedQuotedPrintable(bytes, code.data(), code.size());
    }
    Finish(state, code.size(), bytes == expected);
}

void BM_QuotedDecode_GMime(benchmark::State& state)
{
    const std::string expected = MakeMailText(state);
    const std::string code = Encode(expected);
    Filter filter(FALSE);
    std::string_view bytes;
    for (auto _ : state)
        benchmark::DoNotOptimize(bytes = filter.Run(code));
    Finish(state, code.size(), bytes == expected);
}

// Measures the public operations, including the conversions from and to wide strings.
void BM_QuotedWideRoundTrip_Toolkit(benchmark::State& state)
{
    const TString<wchar_t> text = MakeWideText(state);
    TString<wchar_t> result;
    for (auto _ : state)
        result = QP::ToUNICODE(QP::ToQP(text));
    Finish(state, text.size(), result == text);
}

TString<wchar_t> InsertBreaksOneByOne(TString<wchar_t> code, unsigned int length)
{
    unsigned int position = length - 1;
    while (code.size() > position) {
        while (position > 0 && code[position - 1] == L'=')
            --position;
        code.insert(position, L"=\r\n");
        position += length + 2;
    }
    return code;
}

void BM_SoftBreaks_Toolkit(benchmark::State& state)
{
    constexpr unsigned int lineLength = 76;
    const TString<wchar_t> text = MakeWideText(state);
    TString<wchar_t> lines;
    for (auto _ : state)
        lines = QP::ToQP(text, lineLength, lineLength);
    Finish(state, text.size(), lines == InsertBreaksOneByOne(QP::ToQP(text), lineLength));
}

// Inserts the breaks one at a time.
void BM_SoftBreaks_Insertion(benchmark::State& state)
{
    constexpr unsigned int lineLength = 76;
    const TString<wchar_t> text = MakeWideText(state);
    TString<wchar_t> lines;
    for (auto _ : state)
        lines = InsertBreaksOneByOne(QP::ToQP(text), lineLength);
    Finish(state, text.size(), lines == QP::ToQP(text, lineLength, lineLength));
}

BENCHMARK(BM_QuotedEncode_Toolkit)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(BM_QuotedEncode_GMime)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(BM_QuotedDecode_Toolkit)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(BM_QuotedDecode_GMime)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(BM_QuotedWideRoundTrip_Toolkit)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(BM_SoftBreaks_Toolkit)->Arg(10'000)->Arg(100'000)->Arg(1'000'000);
BENCHMARK(BM_SoftBreaks_Insertion)->Arg(10'000)->Arg(100'000);

} // namespace
} // namespace Toolkit
