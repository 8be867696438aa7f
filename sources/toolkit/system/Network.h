#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Checks whether other machines can be reached. Any thread may call the operations; they block.
/// Nothing is thrown or logged.
class TOOLKIT_API Network {
public:
    /// The host and port that TestNetwork() connects to, and its time limit.
    static constexpr const wchar_t* c_testHost = L"www.example.com";
    static constexpr unsigned short c_testPort = 80;
    static constexpr unsigned int c_testTimeoutMs = 2000;

    /// Returns whether TestConnection() succeeds with the three values above.
    static bool TestNetwork();

    /// Returns whether a TCP connection over IPv4 to `port` of `host` opens within `timeoutMs`
    /// milliseconds, which all addresses of the host share. Name resolution takes additional time.
    /// Sends nothing.
    static bool TestConnection(const TString<wchar_t>& host, unsigned short port,
                               unsigned int timeoutMs);
};

} // namespace Toolkit
