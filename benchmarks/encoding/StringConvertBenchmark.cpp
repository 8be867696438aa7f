#include "toolkit/encoding/StringConvert.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <fmt/xchar.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace Toolkit {
namespace {

constexpr std::size_t c_count = 1000;

// Returns positive and negative numbers of one to ten digits.
std::vector<int> CreateIntegers()
{
    std::mt19937 random(1);
    std::vector<int> numbers;
    for (std::size_t i = 0; i < c_count; ++i)
        numbers.push_back(static_cast<int>(random()) >> (i % 31));
    return numbers;
}

// Returns numbers between -1000 and 1000. A tenth of them is multiplied by 1e-30, another tenth by
// 1e30.
std::vector<double> CreateDoubles()
{
    std::mt19937 random(2);
    std::uniform_real_distribution<double> distribution(-1000, 1000);
    std::vector<double> numbers;
    for (std::size_t i = 0; i < c_count; ++i) {
        double number = distribution(random);
        if (i % 10 == 0)
            number *= 1e-30;
        if (i % 10 == 1)
            number *= 1e30;
        numbers.push_back(number);
    }
    return numbers;
}

template <typename Number>
std::vector<TString<wchar_t>> FormatNumbers(const std::vector<Number>& numbers)
{
    std::vector<TString<wchar_t>> texts;
    for (const Number number : numbers)
        texts.push_back(fmt::format(L"{}", number));
    return texts;
}

// Formats all numbers repeatedly; the strings must equal those of `reference`.
template <typename Number, typename Format, typename Reference>
void FormatAll(benchmark::State& state, const std::vector<Number>& numbers, const Format& format,
               const Reference& reference)
{
    for (const Number number : numbers) {
        if (format(number) != reference(number))
            state.SkipWithError("wrong text");
    }
    for (auto _ : state) {
        for (const Number number : numbers)
            benchmark::DoNotOptimize(format(number).data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(numbers.size()));
}

// Parses all strings repeatedly; the results must equal `numbers`.
template <typename Number, typename Parse>
void ParseAll(benchmark::State& state, const std::vector<Number>& numbers, const Parse& parse)
{
    const std::vector<TString<wchar_t>> texts = FormatNumbers(numbers);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (parse(texts[i]) != numbers[i])
            state.SkipWithError("wrong number");
    }
    for (auto _ : state) {
        for (const TString<wchar_t>& text : texts)
            benchmark::DoNotOptimize(parse(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(numbers.size()));
}

std::wstring FormatInteger(int number)
{
    return std::to_wstring(number);
}

std::wstring FormatDouble(double number)
{
    wchar_t text[32];
    std::swprintf(text, std::size(text), L"%g", number);
    return text;
}

void BM_IntegerToWide_Toolkit(benchmark::State& state)
{
    FormatAll(state, CreateIntegers(), StringConvert::UStringFromInt32, FormatInteger);
}
BENCHMARK(BM_IntegerToWide_Toolkit);

void BM_IntegerToWide_Fmt(benchmark::State& state)
{
    FormatAll(
        state, CreateIntegers(), [](int number) { return fmt::to_wstring(number); }, FormatInteger);
}
BENCHMARK(BM_IntegerToWide_Fmt);

void BM_WideToInteger_Toolkit(benchmark::State& state)
{
    ParseAll(state, CreateIntegers(), [](const TString<wchar_t>& text) {
        int number = 0;
        StringConvert::ToInt32(text, number);
        return number;
    });
}
BENCHMARK(BM_WideToInteger_Toolkit);

void BM_WideToInteger_wcstol(benchmark::State& state)
{
    ParseAll(state, CreateIntegers(), [](const TString<wchar_t>& text) {
        return static_cast<int>(std::wcstol(text.c_str(), nullptr, 10));
    });
}
BENCHMARK(BM_WideToInteger_wcstol);

void BM_DoubleToWide_Toolkit(benchmark::State& state)
{
    FormatAll(state, CreateDoubles(), StringConvert::UStringFromDouble, FormatDouble);
}
BENCHMARK(BM_DoubleToWide_Toolkit);

void BM_DoubleToWide_Fmt(benchmark::State& state)
{
    FormatAll(
        state, CreateDoubles(), [](double number) { return fmt::format(L"{:g}", number); },
        FormatDouble);
}
BENCHMARK(BM_DoubleToWide_Fmt);

void BM_WideToDouble_Toolkit(benchmark::State& state)
{
    ParseAll(state, CreateDoubles(), [](const TString<wchar_t>& text) {
        double number = 0;
        StringConvert::ToDouble(text, number);
        return number;
    });
}
BENCHMARK(BM_WideToDouble_Toolkit);

void BM_WideToDouble_wcstod(benchmark::State& state)
{
    ParseAll(state, CreateDoubles(),
             [](const TString<wchar_t>& text) { return std::wcstod(text.c_str(), nullptr); });
}
BENCHMARK(BM_WideToDouble_wcstod);

} // namespace
} // namespace Toolkit
