#include "toolkit/archive/ArchiveZip.h"

#include "support/TempDir.h"

#include <wx/zipstrm.h>

#include <string>
#include <vector>

#include "archive/ZipWriter.h"
#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t>& GetArchivePath()
{
    static const TempDir directory;
    static const TString<wchar_t> path = [] {
        const TString<wchar_t> name = directory.File(L"an archive with quite a long name.zip");
        WriteZip(name, {{L"an entry with quite a long name.txt",
                         "awordthatislongerthanastring\nasecondlinethatislongtoo\nrest"},
                        {L"another entry with a long name.txt", std::string(100000, 'x')}});
        return name;
    }();
    return path;
}

const TString<wchar_t> c_all = L"*.*";

int List(ArchiveZip& archive, ArchiveZip::EntriesMap& entries)
{
    return archive.EntriesList(entries, c_all, ArchiveEntriesFlags::AllEntries);
}

void OpensArchive(Attempt& attempt)
{
    ArchiveZip archive;
    attempt.Run([&] { archive.Open(GetArchivePath()); });
    ArchiveZip::EntriesMap entries;
    const int count = List(archive, entries);
    attempt.Expect(count == 2, count == -1 && entries.empty());
    archive.Open(GetArchivePath());
    attempt.ExpectAlways(List(archive, entries) == 2);
}

void ListsEntries(Attempt& attempt)
{
    ArchiveZip archive;
    archive.Open(GetArchivePath());
    ArchiveZip::EntriesMap entries;
    int count = 0;
    attempt.Run([&] { count = List(archive, entries); });
    attempt.Expect(count == 2 && entries.size() == 2, count == -1 && entries.empty());
    archive.Open(GetArchivePath());
    attempt.ExpectAlways(List(archive, entries) == 2);
}

void ClosesArchive(Attempt& attempt)
{
    GetArchivePath();
    Storage<ArchiveZip> archive;
    archive.Create().Open(GetArchivePath());
    Storage<ArchiveZip> other;
    other.Create().Open(GetArchivePath());
    attempt.Run([&] {
        archive->Close();
        archive.Destroy();
        other.Destroy();
        const ArchiveZip none;
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

// An open archive whose entries have been listed, with streams for two of them.
struct OpenEntry {
    OpenEntry()
    {
        archive.Open(GetArchivePath());
        List(archive, entries);
        archive.Open(GetArchivePath());
    }
    smart_ptr<ZipInputStream> OpenStream(const wchar_t* name)
    {
        return archive.GetZipInputStream(entries.at(TString<wchar_t>(name)));
    }
    smart_ptr<ZipInputStream> OpenFirst()
    {
        return OpenStream(L"an entry with quite a long name.txt");
    }
    smart_ptr<ZipInputStream> OpenSecond()
    {
        return OpenStream(L"another entry with a long name.txt");
    }

    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
};

void OpensEntry(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ArchiveZipEntry> first = entry.entries.begin()->second;
    smart_ptr<ZipInputStream> stream;
    attempt.Run([&] { stream = entry.archive.GetZipInputStream(first); });
    TString<wchar_t> line;
    const bool isRead = stream->ReadLine(line);
    attempt.Expect(isRead && line == L"awordthatislongerthanastring", !isRead && line.empty());
    attempt.ExpectAlways(entry.OpenFirst()->ReadLine(line));
}

void ReadsWord(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.OpenFirst();
    TString<wchar_t> word = L"old";
    attempt.Run([&] { *stream >> word; });
    attempt.Expect(word == L"awordthatislongerthanastring", word.empty() && !stream->IsOk());
    *entry.OpenFirst() >> word;
    attempt.ExpectAlways(word == L"awordthatislongerthanastring");
}

void ReadsLine(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.OpenFirst();
    TString<wchar_t> line = L"old";
    bool isRead = false;
    attempt.Run([&] { isRead = stream->ReadLine(line); });
    attempt.Expect(isRead && line == L"awordthatislongerthanastring", !isRead && line.empty());
    attempt.ExpectAlways(entry.OpenFirst()->ReadLine(line));
}

void ReadsBytes(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.OpenSecond();
    std::vector<unsigned char> bytes;
    attempt.Run([&] { *stream >> bytes; });
    attempt.Expect(bytes.size() == 100000, bytes.size() < 100000 && !stream->IsOk());
    bytes.clear();
    *entry.OpenSecond() >> bytes;
    attempt.ExpectAlways(bytes.size() == 100000);
}

void UsesStream(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.OpenFirst();
    bool isRight = false;
    attempt.Run([&] {
        isRight = stream->CanRead() && stream->IsOk() &&
                  static_cast<wxZipInputStream*>(*stream) != nullptr;
        const ZipInputStream none(nullptr);
    });
    attempt.Expect(isRight, !isRight);
}

void CopiesEntry(Attempt& attempt)
{
    const wxZipEntry entry(wxString(L"an entry with quite a long name.txt"));
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const ArchiveZipEntry copy(entry);
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

} // namespace

std::vector<Operation> ArchiveOperations()
{
    return {
        {"Toolkit::ArchiveZip::ArchiveZip", ClosesArchive},
        {"Toolkit::ArchiveZip::~ArchiveZip", ClosesArchive},
        {"Toolkit::ArchiveZip::Close", ClosesArchive},
        {"Toolkit::ArchiveZip::Open", OpensArchive},
        {"Toolkit::ArchiveZip::EntriesList", ListsEntries},
        {"Toolkit::ArchiveZip::GetZipInputStream", OpensEntry},
        {"Toolkit::ArchiveZipEntry::ArchiveZipEntry", CopiesEntry},
        {"Toolkit::ArchiveZipEntry::~ArchiveZipEntry", CopiesEntry},
        {"Toolkit::ZipInputStream::operator>>", ReadsWord},
        {"Toolkit::ZipInputStream::operator>>", ReadsBytes},
        {"Toolkit::ZipInputStream::ReadLine", ReadsLine},
        {"Toolkit::ZipInputStream::CanRead", UsesStream},
        {"Toolkit::ZipInputStream::IsOk", UsesStream},
        {"Toolkit::ZipInputStream::operator wxZipInputStream*", UsesStream},
        {"Toolkit::ZipInputStream::ZipInputStream", UsesStream},
        {"Toolkit::ZipInputStream::~ZipInputStream", ClosesArchive},
    };
}

} // namespace Toolkit::TestSupport
