// A server that uses only wxWidgets. It prints "ready" and then, for each message, a line of the
// form "topic|message". The message "quit" stops it.
//
// usage: BareServerProgram path

#include <wx/app.h>
#include <wx/init.h>
#include <wx/sckipc.h>

#include <iostream>
#include <string>

namespace {

class Connection : public wxTCPConnection {
public:
    bool OnExecute(const wxString& topic, const void* data, size_t size,
                   wxIPCFormat format) override
    {
        // IPCClient sends only wide characters with a null at the end, as wxIPC_TEXT.
        const bool isWide = format == wxIPC_TEXT && size % sizeof(wchar_t) == 0;
        const wxString message(static_cast<const wchar_t*>(data), size / sizeof(wchar_t) - 1);
        std::cout << (isWide ? "" : "unexpected format ") << topic.utf8_str() << "|"
                  << message.utf8_str() << std::endl;
        if (message == L"quit")
            wxAppConsole::GetInstance()->ExitMainLoop();
        return true;
    }
};

class Server : public wxTCPServer {
public:
    wxConnectionBase* OnAcceptConnection(const wxString&) override { return new Connection(); }
};

} // namespace

int main(int argc, char** argv)
{
    const wxInitializer wxWidgets;
    Server server;
    if (argc != 2 || !server.Create(wxString::FromUTF8(argv[1])))
        return 1;
    std::cout << "ready" << std::endl;
    return wxAppConsole::GetInstance()->MainLoop();
}
