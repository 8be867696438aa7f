#include "toolkit/framework/ThreadData.h"

#include <wx/string.h>
#include <wx/translation.h>

namespace Toolkit::Framework {

void CreateThreadData()
{
    // The only call that uses the list and works on every thread, even before wxWidgets is started.
    wxTranslations::GetUntranslatedString(wxString());
}

} // namespace Toolkit::Framework
