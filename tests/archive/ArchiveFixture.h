#pragma once

#include "toolkit/archive/ArchiveZip.h"

#include "support/CapturedLog.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/init.h>

#include <string>
#include <vector>

namespace Toolkit::TestSupport {

/// Fixture with one archive in a temporary directory, and the entries of the last listing.
class ArchiveFixture : public testing::Test {
protected:
    TString<wchar_t> Path() const { return m_directory.File(L"archive.zip"); }

    TString<wchar_t> WriteBytes(const std::string& bytes) const
    {
        return m_directory.WriteFile(L"archive.zip", bytes);
    }

    /// Lists the archive at `path` and returns the names of its entries.
    std::vector<std::wstring>
    ListNames(const TString<wchar_t>& path, const TString<wchar_t>& filter = L"",
              ArchiveEntriesFlags::ArchiveEntriesType type = ArchiveEntriesFlags::AllEntries)
    {
        m_archive.Open(path);
        const int count = m_archive.EntriesList(m_entries, filter, type);
        EXPECT_EQ(count, static_cast<int>(m_entries.size()));
        std::vector<std::wstring> names;
        for (const auto& entry : m_entries)
            names.push_back(entry.first);
        return names;
    }

    /// Returns the archive's stream at the beginning of entry `name` of the last listing.
    ZipInputStream& StreamAt(const TString<wchar_t>& name)
    {
        m_stream = m_archive.GetZipInputStream(m_entries[name]);
        return *m_stream;
    }

    std::string ReadBytes(const TString<wchar_t>& name)
    {
        std::vector<unsigned char> bytes;
        StreamAt(name) >> bytes;
        return {bytes.begin(), bytes.end()};
    }

    /// Returns false if the last read hit an error or the end of the data.
    bool IsOk() { return m_archive.GetZipInputStream(smart_ptr<ArchiveZipEntry>())->IsOk(); }

    const wxInitializer m_wxWidgets;
    const CapturedLog m_log;
    const TempDir m_directory;
    ArchiveZip m_archive;
    ArchiveZip::EntriesMap m_entries;
    smart_ptr<ZipInputStream> m_stream;
};

} // namespace Toolkit::TestSupport
