#include "toolkit/archive/ArchiveZip.h"

#include <wx/wfstream.h>
#include <wx/zipstrm.h>

#include <filesystem>
#include <string_view>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

constexpr std::string_view c_line = "words of a line\n";
constexpr int c_wordsPerLine = 4;

Run PrepareListing(int entryCount)
{
    const std::filesystem::path path = GetDirectory() / "many.zip";
    {
        wxFFileOutputStream file{wxString(path.native())};
        constexpr int noCompression = 0;
        wxZipOutputStream archive(file, noCompression);
        for (int entry = 0; entry < entryCount; ++entry)
            archive.PutNextEntry(wxString::Format("entry%07d", entry));
    }
    return [path, entryCount] {
        ArchiveZip archive;
        ArchiveZip::EntriesMap entries;
        archive.Open(ToWide(path));
        Require(archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries) == entryCount);
    };
}

// Creates an archive with one entry of `lines` lines. The returned run passes the stream of the
// entry to `read`, which must return the number of lines.
template <typename Read>
Run PrepareReading(int lines, Read read)
{
    const std::filesystem::path path = GetDirectory() / "one.zip";
    {
        wxFFileOutputStream file{wxString(path.native())};
        wxZipOutputStream archive(file);
        archive.PutNextEntry("entry");
        for (int line = 0; line < lines; ++line)
            archive.Write(c_line.data(), c_line.size());
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

int CountLinesByWords(ZipInputStream& stream)
{
    Text word;
    int count = 0;
    while ((stream >> word).IsOk())
        ++count;
    Require(count % c_wordsPerLine == 0);
    return count / c_wordsPerLine;
}

int CountLinesByBytes(ZipInputStream& stream)
{
    std::vector<unsigned char> bytes;
    stream >> bytes;
    Require(bytes.size() % c_line.size() == 0);
    return static_cast<int>(bytes.size() / c_line.size());
}

} // namespace

void AddArchiveOperations(Operations& operations)
{
    operations.push_back({"ArchiveZip EntriesList", c_fileCounts, PrepareListing});
    operations.push_back({"ZipInputStream ReadLine", c_sizes,
                          [](int lines) { return PrepareReading(lines, CountLines); }});
    operations.push_back({"ZipInputStream words", c_sizes,
                          [](int lines) { return PrepareReading(lines, CountLinesByWords); }});
    operations.push_back({"ZipInputStream bytes", c_sizes,
                          [](int lines) { return PrepareReading(lines, CountLinesByBytes); }});
}

} // namespace Scale
