#pragma once

#include <string>
#include <toolkit/archive/ArchiveZip.h>

#include "LineSearch.h"
#include "PlugIn.h"

/// Searches the entries of an archive line by line, and writes the matching lines to the result of
/// a command, each with its entry name and line number.
class EntrySearch {
public:
    EntrySearch(const TString<wchar_t>& pattern, HostPlugIn::CommandRun& run);

    /// Searches one entry. If it is damaged, searches what can be read and then warns. False if the
    /// command has failed.
    bool Search(const TString<wchar_t>& name, Toolkit::ZipInputStream& stream);

private:
    bool Examine(const TString<wchar_t>& name, unsigned int number, const std::string& bytes);

    LineSearch m_search;
    HostPlugIn::CommandRun& m_run;
};
