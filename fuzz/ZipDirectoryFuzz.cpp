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

// Accepts any stored name that contains `name`: the library makes absolute names relative, and
// appends "/" to the name of a directory.
bool HasName(const std::vector<Tool::StoredZipEntry>& directory, std::string name)
{
    if (!name.empty() && name.back() == '/')
        name.pop_back();
    return std::any_of(directory.begin(), directory.end(),
                       [&name](const Tool::StoredZipEntry& stored) {
                           return stored.name.find(name) != std::string::npos;
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
