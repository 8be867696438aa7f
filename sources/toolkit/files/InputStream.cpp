#include "toolkit/files/InputStream.h"

#include <wx/stream.h>

namespace Toolkit {

InputStream::InputStream(wxInputStream* stream) : m_stream(stream) {}

InputStream::~InputStream()
{
    delete static_cast<wxInputStream*>(m_stream);
    m_stream = nullptr;
}

} // namespace Toolkit
