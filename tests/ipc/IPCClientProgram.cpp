// Sends a text `count` times, numbered. The exit code is the number of failures.
//
// usage: IPCClientProgram service text count

#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCClient.h"

#include <string>

using namespace Toolkit;

int main(int argc, char** argv)
{
    if (argc != 4)
        return 255;
    const TString<wchar_t> service = UTF8::ToUNICODE(argv[1]);
    const TString<wchar_t> text = UTF8::ToUNICODE(argv[2]);
    int failures = 0;
    for (int i = 0; i < std::stoi(argv[3]); ++i)
        failures += IPCClient::Connect(service, text + std::to_wstring(i)) ? 0 : 1;
    return failures;
}
