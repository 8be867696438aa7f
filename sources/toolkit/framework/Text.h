#pragma once

#include "toolkit/core/TString.h"

#include <wx/string.h>

#include <string>

// Conversions to and from wxString. Embedded null characters are kept.
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
