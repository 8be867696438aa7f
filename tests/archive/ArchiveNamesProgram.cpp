// Prints the entry names of the archive argv[1], one per line, as hexadecimal code points.

#include "toolkit/archive/ArchiveZip.h"
#include "toolkit/encoding/UTF8.h"
#include "toolkit/threading/FrameworkHold.h"

#include <cstdio>

int main(int argc, char** argv)
{
    using namespace Toolkit;

    if (argc != 2)
        return 2;
    const FrameworkHold hold;
    ArchiveZip archive;
    ArchiveZip::EntriesMap entries;
    archive.Open(UTF8::ToUNICODE(TString<char>(argv[1])));
    archive.EntriesList(entries, L"", ArchiveEntriesFlags::AllEntries);
    for (const auto& entry : entries) {
        for (const wchar_t character : entry.first)
            std::printf("%lx ", static_cast<unsigned long>(character));
        std::printf("\n");
    }
    return 0;
}
