// The shortest program that starts and stops only wxWidgets.

#include <wx/init.h>

int main()
{
    if (!wxInitialize())
        return 1;
    wxUninitialize();
    return 0;
}
