#include "archive/ZipWriter.h"

#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace Toolkit::TestSupport {

void WriteZip(const TString<wchar_t>& path, const ZipContent& content)
{
    wxFFileOutputStream file((wxString(path)));
    wxZipOutputStream archive(file, -1, wxConvUTF8);
    for (const auto& [name, bytes] : content) {
        if (name.back() == L'/') {
            archive.PutNextDirEntry(name);
            continue;
        }
        archive.PutNextEntry(name);
        archive.Write(bytes.data(), bytes.size());
    }
}

} // namespace Toolkit::TestSupport
