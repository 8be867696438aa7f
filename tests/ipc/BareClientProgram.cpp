// A client that uses only wxWidgets. Sends a message twice on one connection: as UTF-8 and as wide
// characters.
//
// usage: BareClientProgram path message

#include <wx/init.h>
#include <wx/sckipc.h>

#include <memory>

int main(int argc, char** argv)
{
    const wxInitializer wxWidgets;
    if (argc != 3)
        return 1;
    const wxString message = wxString::FromUTF8(argv[2]);
    wxTCPClient client;
    const std::unique_ptr<wxConnectionBase> connection(
        client.MakeConnection(wxString(), wxString::FromUTF8(argv[1]), "topic"));
    if (!connection)
        return 2;
    const bool isSent = connection->Execute(message) && connection->Execute(message.wc_str());
    connection->Disconnect();
    return isSent ? 0 : 3;
}
