#include "toolkit/archive/ArchiveZip.h"

#include "support/TempDir.h"

#include <wx/zipstrm.h>

#include <vector>

#include "archive/ZipWriter.h"
#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t>& ArchivePath()
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

void Opened(Attempt& attempt)
{
    ArchiveZip archive;
    attempt.Run([&] { archive.Open(ArchivePath()); });
    ArchiveZip::EntriesMap entries;
    const int count = List(archive, entries);
    attempt.Expect(count == 2, count == -1 && entries.empty());
    archive.Open(ArchivePath());
    attempt.Always(List(archive, entries) == 2);
}

void Listed(Attempt& attempt)
{
    ArchiveZip archive;
    archive.Open(ArchivePath());
    ArchiveZip::EntriesMap entries;
    int count = 0;
    attempt.Run([&] { count = List(archive, entries); });
    attempt.Expect(count == 2 && entries.size() == 2, count == -1 && entries.empty());
    archive.Open(ArchivePath());
    attempt.Always(List(archive, entries) == 2);
}

void LetGo(Attempt& attempt)
{
    ArchivePath();
    Place<ArchiveZip> archive;
    archive.Make().Open(ArchivePath());
    Place<ArchiveZip> other;
    other.Make().Open(ArchivePath());
    attempt.Run([&] {
        archive->Close();
        archive.End();
        other.End();
        const ArchiveZip none;
    });
    attempt.Always(!attempt.HasFailed());
}

// An open archive whose entries have been listed, with streams for two of them.
struct OpenEntry {
    OpenEntry()
    {
        archive.Open(ArchivePath());
        List(archive, entries);
        archive.Open(ArchivePath());
    }
    smart_ptr<ZipInputStream> Stream(const wchar_t* name)
    {
        return archive.GetZipInputStream(entries.at(TString<wchar_t>(name)));
    }
    smart_ptr<ZipInputStream> First() { return Stream(L"an entry with quite a long name.txt"); }
    smart_ptr<ZipInputStream> Second() { return Stream(L"another entry with a long name.txt"); }

    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
};

void EntryOpened(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ArchiveZipEntry> first = entry.entries.begin()->second;
    smart_ptr<ZipInputStream> stream;
    attempt.Run([&] { stream = entry.archive.GetZipInputStream(first); });
    TString<wchar_t> line;
    const bool isRead = stream->ReadLine(line);
    attempt.Expect(isRead && line == L"awordthatislongerthanastring", !isRead && line.empty());
    attempt.Always(entry.First()->ReadLine(line));
}

void WordRead(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.First();
    TString<wchar_t> word = L"old";
    attempt.Run([&] { *stream >> word; });
    attempt.Expect(word == L"awordthatislongerthanastring", word.empty() && !stream->IsOk());
    *entry.First() >> word;
    attempt.Always(word == L"awordthatislongerthanastring");
}

void LineRead(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.First();
    TString<wchar_t> line = L"old";
    bool isRead = false;
    attempt.Run([&] { isRead = stream->ReadLine(line); });
    attempt.Expect(isRead && line == L"awordthatislongerthanastring", !isRead && line.empty());
    attempt.Always(entry.First()->ReadLine(line));
}

void BytesRead(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.Second();
    std::vector<unsigned char> bytes;
    attempt.Run([&] { *stream >> bytes; });
    attempt.Expect(bytes.size() == 100000, bytes.size() < 100000 && !stream->IsOk());
    bytes.clear();
    *entry.Second() >> bytes;
    attempt.Always(bytes.size() == 100000);
}

void StreamUsed(Attempt& attempt)
{
    OpenEntry entry;
    const smart_ptr<ZipInputStream> stream = entry.First();
    bool isRight = false;
    attempt.Run([&] {
        isRight = stream->CanRead() && stream->IsOk() &&
                  static_cast<wxZipInputStream*>(*stream) != nullptr;
        const ZipInputStream none(nullptr);
    });
    attempt.Expect(isRight, !isRight);
}

void EntryCopied(Attempt& attempt)
{
    const wxZipEntry entry(wxString(L"an entry with quite a long name.txt"));
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const ArchiveZipEntry copy(entry);
            isMade = true;
        }))
        attempt.Expect(isMade);
}

} // namespace

std::vector<Operation> ArchiveOperations()
{
    return {
        {"Toolkit::ArchiveZip::ArchiveZip", LetGo},
        {"Toolkit::ArchiveZip::~ArchiveZip", LetGo},
        {"Toolkit::ArchiveZip::Close", LetGo},
        {"Toolkit::ArchiveZip::Open", Opened},
        {"Toolkit::ArchiveZip::EntriesList", Listed},
        {"Toolkit::ArchiveZip::GetZipInputStream", EntryOpened},
        {"Toolkit::ArchiveZipEntry::ArchiveZipEntry", EntryCopied},
        {"Toolkit::ArchiveZipEntry::~ArchiveZipEntry", EntryCopied},
        {"Toolkit::ZipInputStream::operator>>", WordRead},
        {"Toolkit::ZipInputStream::operator>>", BytesRead},
        {"Toolkit::ZipInputStream::ReadLine", LineRead},
        {"Toolkit::ZipInputStream::CanRead", StreamUsed},
        {"Toolkit::ZipInputStream::IsOk", StreamUsed},
        {"Toolkit::ZipInputStream::operator wxZipInputStream*", StreamUsed},
        {"Toolkit::ZipInputStream::ZipInputStream", StreamUsed},
        {"Toolkit::ZipInputStream::~ZipInputStream", LetGo},
    };
}

} // namespace Toolkit::TestSupport
