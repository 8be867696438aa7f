#pragma once

#include <toolkit/archive/ArchiveZip.h>

#include "LineSearch.h"
#include "PlugIn.h"

/// Searches the entries of an archive line by line and writes the lines that match to the result of
/// a command, with the name of the entry and the number of the line.
class EntrySearch {
public:
    EntrySearch(const TString<wchar_t>& pattern, HostPlugIn::CommandRun& run);

    /// Searches one entry; a part that cannot be read is reported as a warning. False when the
    /// command has failed.
    bool Search(const TString<wchar_t>& name, Toolkit::ZipInputStream& stream);

private:
    bool Examine(const TString<wchar_t>& name, unsigned int number, const std::string& bytes);

    LineSearch m_search;
    HostPlugIn::CommandRun& m_run;
};
