#include "toolkit/files/TextInputStream.h"

#include <wx/txtstrm.h>

namespace Toolkit {

TextInputStream::~TextInputStream()
{
    delete static_cast<wxTextInputStream*>(m_stream);
    m_stream = nullptr;
}

TextInputStream& TextInputStream::operator>>(TString<wchar_t>& word)
{
    word.clear();
    if (!m_stream)
        return *this;
    const wxString read = static_cast<wxTextInputStream*>(m_stream)->ReadWord();
    word.assign(read.wx_str(), read.length());
    return *this;
}

} // namespace Toolkit
