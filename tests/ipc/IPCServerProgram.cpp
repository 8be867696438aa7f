// A server for the tests. It prints "ready" and then each message as a line, or "refused" if it
// cannot run. The message "quit" ends it.
//
// usage: IPCServerProgram service

#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCServer.h"
#include "toolkit/threading/FrameworkHold.h"

#include <wx/app.h>

#include <iostream>

using namespace Toolkit;

namespace {

class Printer : public IPCConnectionEvent {
public:
    void OnExecute(const TString<wchar_t>& text) override
    {
        std::cout << UTF8::ToUTF8(text) << std::endl;
        if (text == L"quit")
            wxAppConsole::GetInstance()->ExitMainLoop();
    }
};

} // namespace

int main(int argc, char** argv)
{
    const FrameworkHold framework;
    IPCServer server(UTF8::ToUNICODE(argc > 1 ? argv[1] : ""));
    server.AddListener(smart_ptr<IPCConnectionEvent>(new Printer()));
    if (!server.Run()) {
        std::cout << "refused" << std::endl;
        return 1;
    }
    std::cout << "ready" << std::endl;
    return wxAppConsole::GetInstance()->MainLoop();
}
