#include "toolkit/archive/ArchiveZip.h"

#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <memory>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

Run PrepareList(int entries)
{
    const std::filesystem::path path = GetDirectory() / "many.zip";
    {
        wxFFileOutputStream file{wxString(path.native())};
        wxZipOutputStream archive(file, 0);
        for (int entry = 0; entry < entries; ++entry)
            archive.PutNextEntry(wxString::Format("entry%07d", entry));
    }
    const auto list = std::make_shared<ArchiveZip::EntriesMap>();
    return [path, entries, list] {
        ArchiveZip archive;
        archive.Open(ToWide(path));
        Require(archive.EntriesList(*list, L"", ArchiveEntriesFlags::AllEntries) == entries);
    };
}

// Returns a run that calls `read` with an entry of `lines` lines.
template <typename Read>
Run PrepareEntry(int lines, Read read)
{
    const std::filesystem::path path = GetDirectory() / "one.zip";
    {
        wxFFileOutputStream file{wxString(path.native())};
        wxZipOutputStream archive(file);
        archive.PutNextEntry("entry");
        for (int line = 0; line < lines; ++line)
            archive.Write("words of a line\n", 16);
    }
    return [path, lines, read] {
        ArchiveZip archive;
        ArchiveZip::EntriesMap entries;
        archive.Open(ToWide(path));
        archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
        Require(read(*archive.GetZipInputStream(entries.begin()->second)) == lines);
    };
}

int CountLines(ZipInputStream& stream)
{
    Text line;
    int count = 0;
    while (stream.ReadLine(line))
        ++count;
    return count;
}

int CountWords(ZipInputStream& stream)
{
    Text word;
    int count = 0;
    while ((stream >> word).IsOk())
        ++count;
    return count / 4;
}

int CountBytes(ZipInputStream& stream)
{
    std::vector<unsigned char> bytes;
    stream >> bytes;
    return static_cast<int>(bytes.size() / 16);
}

} // namespace

void AddArchiveOperations(Operations& operations)
{
    operations.push_back({"ArchiveZip EntriesList", c_files, PrepareList});
    operations.push_back({"ZipInputStream ReadLine", c_lengths,
                          [](int lines) { return PrepareEntry(lines, CountLines); }});
    operations.push_back({"ZipInputStream words", c_lengths,
                          [](int lines) { return PrepareEntry(lines, CountWords); }});
    operations.push_back({"ZipInputStream bytes", c_lengths,
                          [](int lines) { return PrepareEntry(lines, CountBytes); }});
}

} // namespace Scale
