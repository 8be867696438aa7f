#include "toolkit/framework/ThreadData.h"

#include <wx/string.h>
#include <wx/translation.h>

namespace Toolkit::Framework {

void MakeThreadData()
{
    // Of the calls that use the list, this one alone is right on every thread, and when wxWidgets
    // has not been started.
    wxTranslations::GetUntranslatedString(wxString());
}

} // namespace Toolkit::Framework
