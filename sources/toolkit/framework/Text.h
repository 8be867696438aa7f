#pragma once

#include "toolkit/core/TString.h"

#include <wx/string.h>

// Texts on their way to and from wxWidgets, embedded null characters included.
namespace Toolkit::Framework {

inline TString<wchar_t> ToText(const wxString& text)
{
    return std::wstring(text.wx_str(), text.length());
}

inline wxString ToWxString(const std::wstring& text)
{
    return wxString(text.data(), text.size());
}

} // namespace Toolkit::Framework
