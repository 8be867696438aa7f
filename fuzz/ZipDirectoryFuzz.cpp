// For any archive, the directory that `toolkit zip extract` examines lists every entry that the
// library lists.

#include "toolkit/archive/ArchiveZip.h"

#include "support/InputFile.h"
#include "support/Require.h"

#include <wx/log.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/Failure.h"
#include "tools/ZipDirectory.h"

namespace {

using namespace Toolkit;

std::optional<std::vector<Tool::StoredZipEntry>> ReadDirectory(const InputFile& file)
{
    try {
        return Tool::ReadZipDirectory(file.NativePath());
    } catch (const Tool::Failure&) {
        return {};
    }
}

// Removes what wxWidgets removes from the name of an entry: the beginning of an absolute name,
// "./", and the "/" after a directory, which the library appends again.
std::string Normalize(std::string name)
{
    if (!name.empty() && name.back() == '/')
        name.pop_back();
    name.erase(0, std::min(name.size(), name.find_first_not_of('/')));
    while (name.starts_with("./"))
        name.erase(0, 2);
    return name == "." || name == ".." ? "" : name;
}

bool HasName(const std::vector<Tool::StoredZipEntry>& directory, const std::string& name)
{
    return std::any_of(directory.begin(), directory.end(),
                       [&name](const Tool::StoredZipEntry& stored) {
                           return Normalize(stored.name) == Normalize(name);
                       });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const InputFile file;
    file.Write(data, size);
    const auto directory = ReadDirectory(file);
    if (!directory)
        return 0;

    const wxLogNull silence;
    ArchiveZip archive;
    archive.Open(file.Path());
    ArchiveZip::EntriesMap entries;
    if (archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries) < 0)
        return 0;
    Require(entries.size() <= directory->size());
    for (const auto& [wideName, entry] : entries) {
        const wxString name = entry->GetName();
        // Other names depend on the character set.
        if (name.IsAscii())
            Require(HasName(*directory, name.utf8_string()));
    }
    return 0;
}
