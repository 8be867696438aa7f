#include "ZipArchive.h"

#include <wx/log.h>

#include <fcntl.h>
#include <toolkit/encoding/UTF8.h>
#include <vector>

#include "Descriptor.h"
#include "Failure.h"
#include "InputPath.h"

using namespace Toolkit;

namespace Tool {
namespace {

// An archive without entries begins with its end record, which has this signature
// (APPNOTE, 4.3.16).
constexpr std::string_view c_endSignature = "PK\x05\x06";

void RequireReadable(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    char byte = 0;
    if (!file.IsOpen() || ::read(file.Get(), &byte, 1) < 0)
        throw MakeSystemFailure("cannot read " + path);
}

bool IsEmptyArchive(const std::string& path)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    char bytes[c_endSignature.size()] = {};
    return ::read(file.Get(), bytes, sizeof bytes) == sizeof bytes &&
           std::string_view(bytes, sizeof bytes) == c_endSignature;
}

} // namespace

ZipArchive::ZipArchive(const std::string& path, const ZipSelection& selection)
{
    RequireReadable(path);
    const wxLogNull silence;
    m_archive.Open(ToWideArgument(path));
    const int entryCount = m_archive.EntriesList(m_entries, L"", ArchiveEntriesFlags::AllEntries);
    if (entryCount < 0 || (entryCount == 0 && !IsEmptyArchive(path)))
        throw Failure(path + " is not a Zip archive");
    // The archive must be reopened to be listed again.
    m_archive.Open(ToWideArgument(path));
    if (m_archive.EntriesList(m_entries, ToWideArgument(selection.filter), selection.type) < 0)
        throw Failure("cannot list " + path);
}

void ZipArchive::Read(const Entry& entry, const std::function<void(std::string_view)>& onBlock)
{
    constexpr std::size_t blockSize = 65536;

    if ((entry->GetFlags() & wxZIP_ENCRYPTED) != 0)
        throw Failure("the entry \"" + GetEntryName(*entry) + "\" is encrypted");
    const wxLogNull silence;
    const smart_ptr<ZipInputStream> stream = m_archive.GetZipInputStream(entry);
    wxZipInputStream& bytes = *static_cast<wxZipInputStream*>(*stream);
    std::vector<char> block(blockSize);
    while (bytes.Read(block.data(), block.size()).LastRead() > 0)
        onBlock({block.data(), bytes.LastRead()});
    if (bytes.GetLastError() == wxSTREAM_READ_ERROR)
        throw Failure("the entry \"" + GetEntryName(*entry) + "\" is damaged");
}

std::string GetEntryName(const ArchiveZipEntry& entry)
{
    return UTF8::ToUTF8(TString<wchar_t>(entry.GetName().ToStdWstring()));
}

} // namespace Tool
