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

std::string MakeBytes(benchmark::State& state)
{
    std::string bytes(static_cast<std::size_t>(state.range(0)), '\0');
    unsigned int value = 1;
    for (char& byte : bytes) {
        value = value * 1664525 + 1013904223;
        byte = static_cast<char>(value >> 24);
    }
    return bytes;
}

const unsigned char* ToUnsigned(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

std::string Encode(const std::string& bytes)
{
    gchar* const code = g_base64_encode(ToUnsigned(bytes), bytes.size());
    const std::string text = code;
    g_free(code);
    return text;
}

// Reports a wrong result and sets the throughput.
void Finish(benchmark::State& state, bool isCorrect)
{
    if (!isCorrect)
        state.SkipWithError("wrong result");
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

using Operation = bool (*)(const unsigned char*, unsigned int, unsigned char**, unsigned int*);

void Convert(benchmark::State& state, Operation operation, const std::string& in,
             const std::string& expected)
{
    bool isCorrect = true;
    for (auto _ : state) {
        unsigned char* out = nullptr;
        unsigned int length = 0;
        operation(ToUnsigned(in), static_cast<unsigned int>(in.size()), &out, &length);
        benchmark::DoNotOptimize(out);
        // Compares only the length and the last byte, so that the check takes little time.
        isCorrect = isCorrect && length == expected.size() &&
                    out[length - 1] == static_cast<unsigned char>(expected.back());
        delete[] out;
    }
    Finish(state, isCorrect);
}

// Despite their names, b64_decode_binary() encodes, and b64_encode_binary() decodes.
void BM_Base64Encode_Toolkit(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    Convert(state, b64_decode_binary, bytes, Encode(bytes));
}

// Encodes into an existing array.
void BM_Base64Encode_OpenSSL(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const std::string expected = Encode(bytes);
    std::string code(expected.size(), '\0');
    for (auto _ : state) {
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(code.data()), ToUnsigned(bytes),
                        static_cast<int>(bytes.size()));
        benchmark::ClobberMemory();
    }
    Finish(state, code == expected);
}

void BM_Base64Encode_GLib(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const std::string expected = Encode(bytes);
    bool isCorrect = true;
    for (auto _ : state) {
        gchar* const code = g_base64_encode(ToUnsigned(bytes), bytes.size());
        isCorrect = isCorrect && code[expected.size() - 1] == expected.back();
        g_free(code);
    }
    Finish(state, isCorrect);
}

void BM_Base64Decode_Toolkit(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    Convert(state, b64_encode_binary, Encode(bytes), bytes);
}

// Decodes into an existing array.
void BM_Base64Decode_OpenSSL(benchmark::State& state)
{
    const std::string expected = MakeBytes(state);
    const std::string code = Encode(expected);
    std::string bytes(code.size(), '\0');
    for (auto _ : state) {
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), ToUnsigned(code),
                        static_cast<int>(code.size()));
        benchmark::ClobberMemory();
    }
    Finish(state, bytes.substr(0, expected.size()) == expected);
}

void BM_Base64Decode_GLib(benchmark::State& state)
{
    const std::string expected = MakeBytes(state);
    const std::string code = Encode(expected);
    bool isCorrect = true;
    for (auto _ : state) {
        gsize length = 0;
        guchar* const bytes = g_base64_decode(code.c_str(), &length);
        isCorrect = isCorrect && length == expected.size();
        g_free(bytes);
    }
    Finish(state, isCorrect);
}

void BM_Base64ToWide_Toolkit(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const smart_ptr<Bytes> buffer(
        new Bytes(ToUnsigned(bytes), static_cast<unsigned int>(bytes.size())));
    TString<wchar_t> text;
    for (auto _ : state)
        text = B64::ToUNICODE(buffer);
    const std::string expected = Encode(bytes);
    Finish(state, text == std::wstring(expected.begin(), expected.end()));
}

void BM_Base64ToWide_Qt(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const QByteArray buffer(bytes.data(), static_cast<int>(bytes.size()));
    QString text;
    for (auto _ : state)
        text = QString::fromLatin1(buffer.toBase64());
    Finish(state, text.toStdString() == Encode(bytes));
}

std::string GetContents(const smart_ptr<Bytes>& bytes)
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
    const std::string bytes = MakeBytes(state);
    const std::string code = Encode(bytes);
    const TString<wchar_t> text(std::wstring(code.begin(), code.end()));
    for (auto _ : state) {
        const smart_ptr<Bytes> buffer = B64::ToB64(text);
        benchmark::DoNotOptimize(buffer.Get());
    }
    Finish(state, GetContents(B64::ToB64(text)) == bytes);
}

void BM_Base64FromWide_Qt(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const QString text = QString::fromStdString(Encode(bytes));
    for (auto _ : state) {
        const QByteArray buffer = QByteArray::fromBase64(text.toLatin1());
        benchmark::DoNotOptimize(buffer.constData());
    }
    Finish(state, QByteArray::fromBase64(text.toLatin1()).toStdString() == bytes);
}

void BM_Base64WideRoundTrip_Toolkit(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
    const smart_ptr<Bytes> buffer(
        new Bytes(ToUnsigned(bytes), static_cast<unsigned int>(bytes.size())));
    for (auto _ : state) {
        const smart_ptr<Bytes> result = B64::ToB64(B64::ToUNICODE(buffer));
        benchmark::DoNotOptimize(result.Get());
    }
    Finish(state, GetContents(B64::ToB64(B64::ToUNICODE(buffer))) == bytes);
}

void BM_Base64WideRoundTrip_Qt(benchmark::State& state)
{
    const std::string bytes = MakeBytes(state);
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

// Lengths that need no padding: EVP_DecodeBlock() would decode padding to null bytes.
void AddSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(102)->Arg(10'239)->Arg(999'999);
}

BENCHMARK(BM_Base64Encode_Toolkit)->Apply(AddSizes);
BENCHMARK(BM_Base64Encode_OpenSSL)->Apply(AddSizes);
BENCHMARK(BM_Base64Encode_GLib)->Apply(AddSizes);
BENCHMARK(BM_Base64Decode_Toolkit)->Apply(AddSizes);
BENCHMARK(BM_Base64Decode_OpenSSL)->Apply(AddSizes);
BENCHMARK(BM_Base64Decode_GLib)->Apply(AddSizes);
BENCHMARK(BM_Base64ToWide_Toolkit)->Apply(AddSizes);
BENCHMARK(BM_Base64ToWide_Qt)->Apply(AddSizes);
BENCHMARK(BM_Base64FromWide_Toolkit)->Apply(AddSizes);
BENCHMARK(BM_Base64FromWide_Qt)->Apply(AddSizes);
BENCHMARK(BM_Base64WideRoundTrip_Toolkit)->Apply(AddSizes);
BENCHMARK(BM_Base64WideRoundTrip_Qt)->Apply(AddSizes);

} // namespace
} // namespace Toolkit
