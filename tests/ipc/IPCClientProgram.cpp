// Sends `count` messages: `text` followed by a number, padded with spaces to `length` characters.
// The exit code is the number of messages that could not be sent.
//
// usage: IPCClientProgram service text count [length]

#include "toolkit/encoding/UTF8.h"
#include "toolkit/ipc/IPCClient.h"

#include <algorithm>
#include <cstddef>
#include <string>

using namespace Toolkit;

int main(int argc, char** argv)
{
    if (argc < 4)
        return 255;
    const TString<wchar_t> service = UTF8::ToUNICODE(argv[1]);
    const TString<wchar_t> text = UTF8::ToUNICODE(argv[2]);
    const std::size_t length = argc > 4 ? std::stoul(argv[4]) : 0;
    int failures = 0;
    for (int i = 0; i < std::stoi(argv[3]); ++i) {
        std::wstring message = text + std::to_wstring(i);
        message.resize(std::max(message.size(), length), L' ');
        failures += IPCClient::Connect(service, message) ? 0 : 1;
    }
    return failures;
}
