// The shortest program that starts and stops wxWidgets and loads its network library, which
// Toolkit's IPC server needs.

#include <wx/init.h>
#include <wx/sckipc.h>

int main()
{
    if (!wxInitialize())
        return 1;
    {
        const wxTCPServer server; // without a use, the linker may drop the network library
    }
    wxUninitialize();
    return 0;
}
