#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Whether other machines can be reached. Any thread may call the operations, which block it;
/// nothing is thrown or logged.
class TOOLKIT_API Network {
public:
    /// A web host that is always there, and how long it may take to answer.
    static constexpr const wchar_t* c_testHost = L"www.example.com";
    static constexpr unsigned short c_testPort = 80;
    static constexpr unsigned int c_testTimeoutMs = 2000;

    /// Whether the test host can be connected to.
    static bool TestNetwork();

    /// Whether a TCP connection over IPv4 to `port` of `host` opens within `timeoutMs`
    /// milliseconds, not counting the time that finding the host's address takes. Nothing is sent.
    static bool TestConnection(const TString<wchar_t>& host, unsigned short port,
                               unsigned int timeoutMs);
};

} // namespace Toolkit
