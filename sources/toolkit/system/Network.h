#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Checks whether other machines can be reached. Any thread may call the operations; they block.
/// Nothing is thrown or logged.
class TOOLKIT_API Network {
public:
    /// A web host that is always up, and how long it may take to answer.
    static constexpr const wchar_t* c_testHost = L"www.example.com";
    static constexpr unsigned short c_testPort = 80;
    static constexpr unsigned int c_testTimeoutMs = 2000;

    /// Returns whether a connection to the test host can be opened.
    static bool TestNetwork();

    /// Returns whether a TCP connection over IPv4 to `port` of `host` opens within `timeoutMs`
    /// milliseconds. Name resolution is not included in that time. Nothing is sent.
    static bool TestConnection(const TString<wchar_t>& host, unsigned short port,
                               unsigned int timeoutMs);
};

} // namespace Toolkit
