#include "toolkit/core/FSStream.h"
#include "toolkit/core/StreamResult.h"

#include <benchmark/benchmark.h>
#include <wx/file.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace Toolkit {
namespace {

constexpr unsigned int c_textLength = 20;
constexpr unsigned int c_blockSize = 64;
constexpr unsigned int c_textSize = c_textLength * sizeof(wchar_t);

// A temporary file, removed by the destructor.
class ScratchFile {
public:
    ScratchFile()
    {
        const int file = ::mkstemp(m_path);
        if (file < 0)
            std::abort();
        ::close(file);
    }
    ~ScratchFile() { ::unlink(m_path); }

    std::wstring WidePath() const { return {m_path, m_path + std::strlen(m_path)}; }
    const char* Path() const { return m_path; }

private:
    char m_path[32] = "/tmp/toolkit-benchmark-XXXXXX";
};

bool WriteWithStream(const ScratchFile& file, long recordCount)
{
    const TString<wchar_t> text(std::wstring(c_textLength, L'x'));
    const std::string block(c_blockSize, 'b');
    FSStream stream(file.WidePath(), FSStream::OpenWrite);
    bool isCorrect = true;
    for (long index = 0; index < recordCount; ++index) {
        isCorrect =
            isCorrect && !StreamResult::Failed(stream.Write(static_cast<unsigned int>(index)));
        isCorrect = isCorrect && !StreamResult::Failed(stream.Write(text));
        isCorrect = isCorrect && !StreamResult::Failed(stream.Write(block.data(), c_blockSize));
    }
    return isCorrect;
}

bool WriteWithWxFile(const ScratchFile& file, long recordCount)
{
    const std::wstring text(c_textLength, L'x');
    const std::string block(c_blockSize, 'b');
    wxFile output(file.Path(), wxFile::write);
    bool isCorrect = true;
    for (long index = 0; index < recordCount; ++index) {
        const auto value = static_cast<unsigned int>(index);
        isCorrect = isCorrect && output.Write(&value, sizeof value) == sizeof value;
        isCorrect = isCorrect && output.Write(&c_textSize, sizeof c_textSize) == sizeof c_textSize;
        isCorrect = isCorrect && output.Write(text.data(), c_textSize) == c_textSize;
        isCorrect = isCorrect && output.Write(block.data(), c_blockSize) == c_blockSize;
    }
    return isCorrect;
}

bool ReadWithStream(const ScratchFile& file, long recordCount)
{
    TString<wchar_t> text;
    char block[c_blockSize];
    FSStream stream(file.WidePath(), FSStream::OpenRead);
    bool isCorrect = true;
    for (long index = 0; index < recordCount; ++index) {
        unsigned int value = 0;
        isCorrect = isCorrect && !StreamResult::Failed(stream.Read(value)) && value == index;
        isCorrect =
            isCorrect && !StreamResult::Failed(stream.Read(text)) && text.size() == c_textLength;
        isCorrect = isCorrect && !StreamResult::Failed(stream.Read(block, c_blockSize));
    }
    return isCorrect;
}

bool ReadWithWxFile(const ScratchFile& file, long recordCount)
{
    std::wstring text;
    char block[c_blockSize];
    wxFile input(file.Path(), wxFile::read);
    bool isCorrect = true;
    for (long index = 0; index < recordCount; ++index) {
        unsigned int value = 0;
        unsigned int size = 0;
        isCorrect = isCorrect && input.Read(&value, sizeof value) == sizeof value && value == index;
        isCorrect =
            isCorrect && input.Read(&size, sizeof size) == sizeof size && size == c_textSize;
        text.resize(size / sizeof(wchar_t));
        isCorrect = isCorrect && input.Read(text.data(), size) == size;
        isCorrect = isCorrect && input.Read(block, c_blockSize) == c_blockSize;
    }
    return isCorrect;
}

bool ReadWithStdio(const ScratchFile& file, long recordCount)
{
    std::wstring text;
    char block[c_blockSize];
    std::FILE* const input = std::fopen(file.Path(), "rb");
    bool isCorrect = true;
    for (long index = 0; index < recordCount; ++index) {
        unsigned int value = 0;
        unsigned int size = 0;
        isCorrect = isCorrect && std::fread(&value, sizeof value, 1, input) == 1 && value == index;
        isCorrect =
            isCorrect && std::fread(&size, sizeof size, 1, input) == 1 && size == c_textSize;
        text.resize(size / sizeof(wchar_t));
        isCorrect = isCorrect && std::fread(text.data(), size, 1, input) == 1;
        isCorrect = isCorrect && std::fread(block, c_blockSize, 1, input) == 1;
    }
    std::fclose(input);
    return isCorrect;
}

using Transfer = bool (*)(const ScratchFile&, long);

void Run(benchmark::State& state, const ScratchFile& file, Transfer transfer)
{
    const long recordCount = state.range(0);
    for (auto _ : state) {
        if (!transfer(file, recordCount))
            state.SkipWithError("a record was not transferred correctly");
    }
    state.SetItemsProcessed(state.iterations() * recordCount);
}

constexpr long c_recordsToWrite = 100'000;
constexpr long c_recordsToRead = 1'000'000;

// Returns a file of records to read. The first call writes it.
const ScratchFile& GetRecordFile()
{
    static const ScratchFile file;
    static const bool isWritten = WriteWithStream(file, c_recordsToRead);
    if (!isWritten)
        std::abort();
    return file;
}

void BM_WriteRecords_Toolkit(benchmark::State& state)
{
    Run(state, ScratchFile(), WriteWithStream);
}

void BM_WriteRecords_wxFile(benchmark::State& state)
{
    Run(state, ScratchFile(), WriteWithWxFile);
}

void BM_ReadRecords_Toolkit(benchmark::State& state)
{
    Run(state, GetRecordFile(), ReadWithStream);
}

void BM_ReadRecords_wxFile(benchmark::State& state)
{
    Run(state, GetRecordFile(), ReadWithWxFile);
}

void BM_ReadRecords_fread(benchmark::State& state)
{
    Run(state, GetRecordFile(), ReadWithStdio);
}

BENCHMARK(BM_WriteRecords_Toolkit)->Arg(c_recordsToWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteRecords_wxFile)->Arg(c_recordsToWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRecords_Toolkit)->Arg(c_recordsToRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRecords_wxFile)->Arg(c_recordsToRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRecords_fread)->Arg(c_recordsToRead)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Toolkit
