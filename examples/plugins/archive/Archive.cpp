// A plug-in of the example host that lists and searches the entries of Zip archives:
//
//     list   -archive <file> [-filter <name prefix>*]
//     search -archive <file> -pattern <regular expression> [-filter <name prefix>*]

#include <iterator>
#include <toolkit/Toolkit.h>

#include "EntrySearch.h"
#include "PlugIn.h"
#include "StartStopLog.h"

using namespace HostPlugIn;
using namespace Toolkit;

namespace {

using Text = TString<wchar_t>;

StartStopLog s_module(L"archive");
const ModuleRegistration s_registration(s_module);

// An archive begins with "PK", even if it has no entries. EntriesList() accepts other files too,
// and finds no entries in them. Also rejects self-extracting archives, which begin with a program.
bool HasZipSignature(const Text& path)
{
    char signature[2] = {};
    FFile file;
    return file.Open(path, L"rb") && file.Read(signature, sizeof signature) &&
           signature[0] == 'P' && signature[1] == 'K';
}

// Opens the archive that the command line names, and lists its entries.
bool Open(ArchiveZip& archive, ArchiveZip::EntriesMap& entries, CommandRun& run)
{
    const Text& path = run.GetValue(L"archive");
    if (!PathManager::FileExists(path))
        return run.Fail(L"cannot find the archive " + path);
    archive.Open(path);
    if (archive.EntriesList(entries, run.GetValue(L"filter"), ArchiveEntriesFlags::FilesOnly) < 0 ||
        !HasZipSignature(path))
        return run.Fail(path + L" is not a readable archive");
    return true;
}

// Writes the size in bytes and the name of each entry.
bool List(CommandRun& run)
{
    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
    if (!Open(archive, entries, run))
        return false;

    unsigned int done = 0;
    for (const auto& [name, entry] : entries) {
        const Text size = StringConvert::UStringFromInt64(entry->GetSize());
        if (!run.WriteLine(size + L"\t" + name) ||
            !run.ReportProgress(++done, entries.size(), L"entries"))
            return false;
    }
    return true;
}

bool SearchEntry(EntrySearch& search, ArchiveZip& archive, const Text& name,
                 const smart_ptr<ArchiveZipEntry>& entry, CommandRun& run)
{
    if (entry->GetFlags() & wxZIP_ENCRYPTED) {
        run.Warn(L"the entry \"" + name + L"\" is encrypted and was not searched");
        return true;
    }
    return search.Search(name, *archive.GetZipInputStream(entry));
}

bool Search(CommandRun& run)
{
    EntrySearch search(run.GetValue(L"pattern"), run);
    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
    if (!Open(archive, entries, run))
        return false;

    unsigned int done = 0;
    for (const auto& [name, entry] : entries) {
        if (!SearchEntry(search, archive, name, entry, run) ||
            !run.ReportProgress(++done, entries.size(), L"entries"))
            return false;
    }
    return true;
}

constexpr Option c_listOptions[] = {{L"archive", Option::Path, true},
                                    {L"filter", Option::Value, false}};
constexpr Option c_searchOptions[] = {{L"archive", Option::Path, true},
                                      {L"pattern", Option::Value, true},
                                      {L"filter", Option::Value, false}};
constexpr Command c_commands[] = {
    {L"list", L"sizes and names of the entries of a Zip archive", c_listOptions,
     std::size(c_listOptions), RunGuarded<List>},
    {L"search", L"lines of a Zip archive's entries that match a regular expression",
     c_searchOptions, std::size(c_searchOptions), RunGuarded<Search>},
};

} // namespace

const PlugIn* GetHostPlugIn() noexcept
{
    static const PlugIn plugIn{c_interfaceVersion, L"archive", s_registration.GetFailure(),
                               c_commands, std::size(c_commands)};
    return &plugIn;
}
