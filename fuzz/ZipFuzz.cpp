// Reading any archive, in any mixture of words, lines and bytes, gives the same results as a
// wxZipInputStream with a new wxTextInputStream for every word and line.

#include "toolkit/archive/ArchiveZip.h"

#include "support/Input.h"
#include "support/InputFile.h"
#include "support/Require.h"

#include <wx/log.h>
#include <wx/txtstrm.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace Toolkit;

// One byte of a Zip archive may expand to a thousand, so these limits bound the time per input.
constexpr std::size_t c_maxInputSize = 16384;
constexpr int c_maxEntries = 8;
constexpr std::size_t c_maxBytes = 100'000;

using Bytes = std::vector<unsigned char>;

// Reads an entry from the library's stream and from wxZipInputStream, and compares.
class Comparison {
public:
    Comparison(ZipInputStream& stream, wxZipInputStream& reference)
        : m_stream(stream), m_reference(reference)
    {
        CompareState();
    }

    void ReadLine()
    {
        TString<wchar_t> line = L"before";
        const bool hasLine = m_stream.ReadLine(line);
        const std::wstring expected = CreateReader().ReadLine().ToStdWstring();
        Require(hasLine == m_reference.IsOk());
        Require(line == (hasLine ? expected : std::wstring()));
        CompareState();
    }

    void ReadWord()
    {
        TString<wchar_t> word = L"before";
        m_stream >> word;
        Require(word == CreateReader().ReadWord().ToStdWstring());
        CompareState();
    }

    void ReadByte()
    {
        Require(WxStream().GetC() == m_reference.GetC());
        CompareState();
    }

    void ReadBlock(std::size_t size)
    {
        Bytes block(size);
        Bytes expected(size);
        block.resize(WxStream().Read(block.data(), size).LastRead());
        expected.resize(m_reference.Read(expected.data(), size).LastRead());
        Require(block == expected);
        CompareState();
    }

    // Peeks at the next byte, then puts back `byte`, which need not be the same.
    void PeekAndPutBack(char byte)
    {
        Require(WxStream().Peek() == m_reference.Peek());
        Require(WxStream().Ungetch(byte) == m_reference.Ungetch(byte));
        CompareState();
    }

    void ReadRest()
    {
        Bytes bytes{'b'};
        m_stream >> bytes;
        Require(!bytes.empty() && bytes.front() == 'b');
        std::size_t count = 1;
        for (int byte = m_reference.GetC(); byte >= 0; byte = m_reference.GetC()) {
            Require(count < bytes.size() && bytes[count] == byte);
            if (++count > c_maxBytes)
                return;
        }
        Require(count == bytes.size());
        CompareState();
    }

private:
    wxZipInputStream& WxStream() const { return *static_cast<wxZipInputStream*>(m_stream); }

    wxTextInputStream CreateReader() const { return wxTextInputStream(m_reference, " \t"); }

    void CompareState() const
    {
        Require(WxStream().GetLastError() == m_reference.GetLastError());
        Require(m_stream.IsOk() == m_reference.IsOk());
        Require(WxStream().TellI() == m_reference.TellI());
    }

    ZipInputStream& m_stream;
    wxZipInputStream& m_reference;
};

void ReadMixture(Comparison& comparison, const std::string& operations)
{
    for (const char operation : operations) {
        switch (operation & 7) {
        case 0:
        case 1:
            comparison.ReadLine();
            break;
        case 2:
        case 3:
            comparison.ReadWord();
            break;
        case 4:
            comparison.ReadByte();
            break;
        case 5:
            comparison.ReadBlock(static_cast<unsigned char>(operation));
            break;
        case 6:
            comparison.PeekAndPutBack(operation);
            break;
        default:
            comparison.ReadRest();
        }
    }
}

int List(ArchiveZip& archive, ArchiveZip::EntriesMap& entries)
{
    const int count = archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
    Require(count == -1 || count == static_cast<int>(entries.size()));
    return count;
}

// After a listing, a second one finds nothing until the archive is opened again. A listing that
// meets an invalid entry may stop before the end of the data.
void ListTwice(ArchiveZip& archive, const TString<wchar_t>& path, ArchiveZip::EntriesMap& entries)
{
    archive.Open(path);
    const int count = List(archive, entries);
    const bool isAtEnd = !archive.GetZipInputStream(smart_ptr<ArchiveZipEntry>())->IsOk();
    Require(!isAtEnd || (List(archive, entries) == -1 && entries.empty()));
    archive.Open(path);
    Require(List(archive, entries) == count);
}

// Returns a wxZipInputStream at `entry`, opened like the library's stream after a listing. Always a
// new one, because the data of an entry must not depend on earlier reads.
std::unique_ptr<wxZipInputStream> OpenReference(const TString<wchar_t>& path, wxZipEntry& entry)
{
    auto reference = std::make_unique<wxZipInputStream>(new wxFFileInputStream(wxString(path)));
    while (std::unique_ptr<wxZipEntry>(reference->GetNextEntry())) {
    }
    reference->Reset();
    if (!reference->OpenEntry(entry))
        reference->Reset(wxSTREAM_READ_ERROR);
    return reference;
}

void ReadEntries(ArchiveZip& archive, const ArchiveZip::EntriesMap& entries,
                 const TString<wchar_t>& path, const std::string& operations)
{
    const std::string restOnly = "\7";
    int count = 0;
    for (const auto& [name, entry] : entries) {
        for (const std::string& order : {operations, restOnly}) {
            const smart_ptr<ZipInputStream> stream = archive.GetZipInputStream(entry);
            const std::unique_ptr<wxZipInputStream> reference = OpenReference(path, *entry);
            Comparison comparison(*stream, *reference);
            ReadMixture(comparison, order);
        }
        if (++count == c_maxEntries)
            return;
    }
}

void AbortOnAssert(const wxString&, int, const wxString&, const wxString&, const wxString&)
{
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The input is the number of read operations, a byte for each, and the archive.
    constexpr unsigned int maxOperations = 32;
    static const InputFile file;
    if (size > c_maxInputSize)
        return 0;
    Input input(data, size);
    std::string operations;
    for (unsigned int count = input.ReadByte() % maxOperations; count > 0; --count)
        operations.push_back(static_cast<char>(input.ReadByte()));
    const std::string bytes = input.ReadRest();
    file.Write(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());

    wxSetAssertHandler(AbortOnAssert);
    const wxLogNull silence;
    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
    ListTwice(archive, file.Path(), entries);
    ReadEntries(archive, entries, file.Path(), operations);
    return 0;
}
