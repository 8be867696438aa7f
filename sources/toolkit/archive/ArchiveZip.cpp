#include "toolkit/archive/ArchiveZip.h"

#include "toolkit/archive/ArchiveStream.Private.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/core/Assert.h"
#include "toolkit/framework/Silence.h"
#include "toolkit/framework/Text.h"
#include "toolkit/logging/Log.h"

#include <memory>
#include <utility>

namespace Toolkit {
namespace {

// Line numbers logged for the two failures. Fixed, because log readers match on them.
constexpr int c_unreadableLine = 96;
constexpr int c_invalidLine = 103;

// Selects names by their prefix; see EntriesList().
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

void List(wxZipInputStream* stream, const TString<wchar_t>& filter,
          ArchiveEntriesFlags::ArchiveEntriesType type, ArchiveZip::EntriesMap& entries)
{
    const Framework::Silence silence;
    const NameFilter names(filter);
    while (const std::unique_ptr<wxZipEntry> entry{stream->GetNextEntry()}) {
        TString<wchar_t> name = Framework::ToText(entry->GetName());
        if (!IsOfType(*entry, type) || !names.Selects(name))
            continue;
        // The end is a hint: most archives are sorted by name.
        entries.try_emplace(entries.end(), std::move(name),
                            smart_ptr<ArchiveZipEntry>(new ArchiveZipEntry(*entry)));
    }
}

} // namespace

ArchiveZip::ArchiveZip() : m_stream(smart_ptr<ZipInputStream>::Empty()) {}

ArchiveZip::~ArchiveZip()
{
    Close();
}

void ArchiveZip::Open(const TString<wchar_t>& path)
{
    Close();
    static_cast<void>(Base::RunsWithoutThrowing([&] {
        const Framework::Silence silence;
        // `new` allocates the ZipInputStream before OpenFile() runs, so that nothing leaks when out
        // of memory.
        m_stream =
            smart_ptr<ZipInputStream>(new ZipInputStream(ArchiveStream::OpenFile(path).release()));
    }));
}

void ArchiveZip::Close()
{
    // Empty() needs no memory; for a null pointer, smart_ptr would allocate a count.
    if (m_stream.IsValid())
        m_stream = smart_ptr<ZipInputStream>::Empty();
}

int ArchiveZip::EntriesList(EntriesMap& entries, const TString<wchar_t>& filter,
                            ArchiveEntriesFlags::ArchiveEntriesType type)
{
    // `filter` may be a key of `entries`, so the old entries are kept until the function returns.
    EntriesMap previous;
    previous.swap(entries);
    if (!m_stream.IsValid() || !m_stream->IsOk()) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_invalidLine)
            << L"  archive is not valid! " << ILogger::c_strLogToken3;
        ASSERT(false);
        return -1;
    }
    if (!m_stream->CanRead()) {
        TOOLKIT_LOG_AT_LINE(SeverityError, c_unreadableLine)
            << L"  archive format can't be read! " << ILogger::c_strLogToken3;
        ASSERT(false);
        return -1;
    }
    if (Base::RunsWithoutThrowing([&] { List(*m_stream, filter, type, entries); }))
        return static_cast<int>(entries.size());
    // The result has all entries or none.
    entries.clear();
    return -1;
}

smart_ptr<ZipInputStream> ArchiveZip::GetZipInputStream(const smart_ptr<ArchiveZipEntry>& entry)
{
    if (!m_stream.IsValid() || !entry.IsValid())
        return m_stream;
    wxZipInputStream* const stream = *m_stream;
    const bool isOpen = Base::TryOr(false, [&] {
        const Framework::Silence silence;
        // An error in one entry must not prevent reading the others.
        stream->Reset();
        stream->CloseEntry();
        return stream->OpenEntry(*entry);
    });
    ASSERT(isOpen);
    // Without the error, wxZipInputStream would continue with the next entry that it finds.
    if (!isOpen)
        stream->Reset(wxSTREAM_READ_ERROR);
    return m_stream;
}

} // namespace Toolkit
