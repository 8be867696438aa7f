#include "toolkit/files/TextInputStream.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/framework/Text.h"

#include <wx/txtstrm.h>

namespace Toolkit {

TextInputStream::~TextInputStream()
{
    delete static_cast<wxTextInputStream*>(m_stream);
    m_stream = nullptr;
}

TextInputStream& TextInputStream::operator>>(TString<wchar_t>& word)
{
    word = Base::TryOr({}, [this] {
        auto* const stream = static_cast<wxTextInputStream*>(m_stream);
        return stream ? Framework::ToText(stream->ReadWord()) : TString<wchar_t>();
    });
    return *this;
}

} // namespace Toolkit
