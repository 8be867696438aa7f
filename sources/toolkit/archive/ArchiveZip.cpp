#include "toolkit/archive/ArchiveZip.h"

#include "toolkit/archive/ArchiveStream.Private.h"
#include "toolkit/core/Assert.h"
#include "toolkit/framework/Silence.h"
#include "toolkit/framework/Text.h"
#include "toolkit/logging/Log.h"

#include <exception>
#include <memory>

namespace Toolkit {
namespace {

// The line numbers that readers of the log know the two failures by.
constexpr int c_cannotReadLine = 96;
constexpr int c_notValidLine = 103;

// Selects names by their beginning.
class NameFilter {
public:
    explicit NameFilter(const TString<wchar_t>& filter)
    {
        if (filter != L"*.*")
            m_prefix = filter.substr(0, filter.rfind(L'*'));
    }

    bool Selects(const TString<wchar_t>& name) const
    {
        return m_prefix.empty() ||
               TString<wchar_t>(name.substr(0, m_prefix.size())).compareNoCase(m_prefix) == 0;
    }

private:
    TString<wchar_t> m_prefix;
};

bool IsOfType(const wxZipEntry& entry, ArchiveEntriesFlags::ArchiveEntriesType type)
{
    if ((type & ArchiveEntriesFlags::DirectoriesOnly) && !entry.IsDir())
        return false;
    return !((type & ArchiveEntriesFlags::FilesOnly) && entry.IsDir());
}

} // namespace

ArchiveZip::ArchiveZip() = default;

ArchiveZip::~ArchiveZip()
{
    Close();
}

void ArchiveZip::Open(const TString<wchar_t>& path)
{
    const Framework::Silence silence;
    if (m_stream.IsValid())
        Close();
    m_stream = new ZipInputStream(ArchiveStream::OpenFile(path).release());
}

void ArchiveZip::Close()
{
    if (m_stream.IsValid())
        m_stream = nullptr;
}

int ArchiveZip::EntriesList(EntriesMap& entries, const TString<wchar_t>& filter,
                            ArchiveEntriesFlags::ArchiveEntriesType type)
try {
    const Framework::Silence silence;
    entries.clear();
    if (!m_stream.IsValid() || !m_stream->IsOk()) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_notValidLine)
            << L"  archive is not valid! " << ILogger::c_strLogToken3;
        ASSERT(false);
        return -1;
    }
    if (!m_stream->CanRead()) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_cannotReadLine)
            << L"  archive format can't be read! " << ILogger::c_strLogToken3;
        ASSERT(false);
        return -1;
    }

    const NameFilter names(filter);
    wxZipInputStream* const stream = *m_stream;
    while (const std::unique_ptr<wxZipEntry> entry{stream->GetNextEntry()}) {
        TString<wchar_t> name = Framework::ToText(entry->GetName());
        if (!IsOfType(*entry, type) || !names.Selects(name))
            continue;
        // Most archives are in the order of their names.
        entries.try_emplace(entries.end(), std::move(name),
                            smart_ptr<ArchiveZipEntry>(new ArchiveZipEntry(*entry)));
    }
    return static_cast<int>(entries.size());
} catch (const std::exception&) {
    // Rather no entries than some of them.
    entries.clear();
    return -1;
}

smart_ptr<ZipInputStream> ArchiveZip::GetZipInputStream(const smart_ptr<ArchiveZipEntry>& entry)
{
    const Framework::Silence silence;
    if (!m_stream.IsValid() || !entry.IsValid())
        return m_stream;
    wxZipInputStream* const stream = *m_stream;
    // An error of one entry must not keep the others from being read.
    stream->Reset();
    stream->CloseEntry();
    const bool isOpen = stream->OpenEntry(*entry);
    ASSERT(isOpen);
    // The framework would go on with whatever entry it finds next.
    if (!isOpen)
        stream->Reset(wxSTREAM_READ_ERROR);
    return m_stream;
}

} // namespace Toolkit
