#include "toolkit/encoding/Base64.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <glib.h>
#include <openssl/evp.h>
#include <string>

namespace Toolkit {
namespace {

std::string BytesOf(benchmark::State& state)
{
    std::string bytes(static_cast<std::size_t>(state.range(0)), '\0');
    unsigned int value = 1;
    for (char& byte : bytes) {
        value = value * 1664525 + 1013904223;
        byte = static_cast<char>(value >> 24);
    }
    return bytes;
}

const unsigned char* Raw(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string CodeOf(const std::string& bytes)
{
    gchar* const code = g_base64_encode(Raw(bytes), bytes.size());
    const std::string text = code;
    g_free(code);
    return text;
}

void Finish(benchmark::State& state, bool isRight)
{
    if (!isRight)
        state.SkipWithError("wrong result");
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

using Operation = bool (*)(const unsigned char*, unsigned int, unsigned char**, unsigned int*);

void Convert(benchmark::State& state, Operation operation, const std::string& in,
             const std::string& expected)
{
    bool isRight = true;
    for (auto _ : state) {
        unsigned char* out = nullptr;
        unsigned int length = 0;
        operation(Raw(in), static_cast<unsigned int>(in.size()), &out, &length);
        benchmark::DoNotOptimize(out);
        // Compares a single byte, so that the comparison does not dominate the time.
        isRight = isRight && length == expected.size() &&
                  out[length - 1] == static_cast<unsigned char>(expected.back());
        delete[] out;
    }
    Finish(state, isRight);
}

void BM_Base64Encode_Toolkit(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    Convert(state, b64_decode_binary, bytes, CodeOf(bytes));
}

// Encodes into an existing array.
void BM_Base64Encode_OpenSSL(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const std::string expected = CodeOf(bytes);
    std::string code(expected.size(), '\0');
    for (auto _ : state) {
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(code.data()), Raw(bytes),
                        static_cast<int>(bytes.size()));
        benchmark::ClobberMemory();
    }
    Finish(state, code == expected);
}

void BM_Base64Encode_GLib(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const std::string expected = CodeOf(bytes);
    bool isRight = true;
    for (auto _ : state) {
        gchar* const code = g_base64_encode(Raw(bytes), bytes.size());
        isRight = isRight && code[expected.size() - 1] == expected.back();
        g_free(code);
    }
    Finish(state, isRight);
}

void BM_Base64Decode_Toolkit(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    Convert(state, b64_encode_binary, CodeOf(bytes), bytes);
}

// Decodes into an existing array.
void BM_Base64Decode_OpenSSL(benchmark::State& state)
{
    const std::string expected = BytesOf(state);
    const std::string code = CodeOf(expected);
    std::string bytes(code.size(), '\0');
    for (auto _ : state) {
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), Raw(code),
                        static_cast<int>(code.size()));
        benchmark::ClobberMemory();
    }
    Finish(state, bytes.substr(0, expected.size()) == expected);
}

void BM_Base64Decode_GLib(benchmark::State& state)
{
    const std::string expected = BytesOf(state);
    const std::string code = CodeOf(expected);
    bool isRight = true;
    for (auto _ : state) {
        gsize length = 0;
        guchar* const bytes = g_base64_decode(code.c_str(), &length);
        isRight = isRight && length == expected.size();
        g_free(bytes);
    }
    Finish(state, isRight);
}

void BM_Base64ToWide_Toolkit(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const smart_ptr<Bytes> buffer(new Bytes(Raw(bytes), static_cast<unsigned int>(bytes.size())));
    TString<wchar_t> text;
    for (auto _ : state)
        text = B64::ToUNICODE(buffer);
    const std::string expected = CodeOf(bytes);
    Finish(state, text == std::wstring(expected.begin(), expected.end()));
}

void BM_Base64ToWide_Qt(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const QByteArray buffer(bytes.data(), static_cast<int>(bytes.size()));
    QString text;
    for (auto _ : state)
        text = QString::fromLatin1(buffer.toBase64());
    Finish(state, text.toStdString() == CodeOf(bytes));
}

std::string ContentsOf(const smart_ptr<Bytes>& bytes)
{
    unsigned char* copy = nullptr;
    unsigned int length = 0;
    bytes->GetBytes(&copy, &length);
    const std::string contents(reinterpret_cast<char*>(copy), length);
    delete[] copy;
    return contents;
}

void BM_Base64FromWide_Toolkit(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const std::string code = CodeOf(bytes);
    const TString<wchar_t> text(std::wstring(code.begin(), code.end()));
    for (auto _ : state) {
        const smart_ptr<Bytes> buffer = B64::ToB64(text);
        benchmark::DoNotOptimize(buffer.Get());
    }
    Finish(state, ContentsOf(B64::ToB64(text)) == bytes);
}

void BM_Base64FromWide_Qt(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const QString text = QString::fromStdString(CodeOf(bytes));
    for (auto _ : state) {
        const QByteArray buffer = QByteArray::fromBase64(text.toLatin1());
        benchmark::DoNotOptimize(buffer.constData());
    }
    Finish(state, QByteArray::fromBase64(text.toLatin1()).toStdString() == bytes);
}

void BM_Base64WideRoundTrip_Toolkit(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const smart_ptr<Bytes> buffer(new Bytes(Raw(bytes), static_cast<unsigned int>(bytes.size())));
    for (auto _ : state) {
        const smart_ptr<Bytes> result = B64::ToB64(B64::ToUNICODE(buffer));
        benchmark::DoNotOptimize(result.Get());
    }
    Finish(state, ContentsOf(B64::ToB64(B64::ToUNICODE(buffer))) == bytes);
}

void BM_Base64WideRoundTrip_Qt(benchmark::State& state)
{
    const std::string bytes = BytesOf(state);
    const QByteArray buffer(bytes.data(), static_cast<int>(bytes.size()));
    const auto roundTrip = [&buffer] {
        return QByteArray::fromBase64(QString::fromLatin1(buffer.toBase64()).toLatin1());
    };
    for (auto _ : state) {
        const QByteArray result = roundTrip();
        benchmark::DoNotOptimize(result.constData());
    }
    Finish(state, roundTrip() == buffer);
}

// Lengths that need no padding: the peer would count padding as bytes.
void Sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(102)->Arg(10'239)->Arg(999'999);
}

BENCHMARK(BM_Base64Encode_Toolkit)->Apply(Sizes);
BENCHMARK(BM_Base64Encode_OpenSSL)->Apply(Sizes);
BENCHMARK(BM_Base64Encode_GLib)->Apply(Sizes);
BENCHMARK(BM_Base64Decode_Toolkit)->Apply(Sizes);
BENCHMARK(BM_Base64Decode_OpenSSL)->Apply(Sizes);
BENCHMARK(BM_Base64Decode_GLib)->Apply(Sizes);
BENCHMARK(BM_Base64ToWide_Toolkit)->Apply(Sizes);
BENCHMARK(BM_Base64ToWide_Qt)->Apply(Sizes);
BENCHMARK(BM_Base64FromWide_Toolkit)->Apply(Sizes);
BENCHMARK(BM_Base64FromWide_Qt)->Apply(Sizes);
BENCHMARK(BM_Base64WideRoundTrip_Toolkit)->Apply(Sizes);
BENCHMARK(BM_Base64WideRoundTrip_Qt)->Apply(Sizes);

} // namespace
} // namespace Toolkit
