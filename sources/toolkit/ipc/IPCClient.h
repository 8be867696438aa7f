#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Sends messages to an `IPCServer`.
class TOOLKIT_API IPCClient {
public:
    /// Maximum duration of one call of Connect().
    static constexpr unsigned int c_timeoutMs = 10000;

    /// Sends the message `text`, up to its first null character, to the server with the name
    /// `service`, which must not be empty: for the application's own service, pass
    /// IPCServer::GetSocketPath(L""). True when all of it is sent; the server's listeners may not
    /// have received it yet.
    ///
    /// False if `service` is not a valid name, if no server of this user answers, if the server
    /// disconnects before all is sent, after `c_timeoutMs`, if `text` is longer than 16 MiB in
    /// UTF-8, and when out of memory. Refuses a socket file that is a symbolic link or belongs to
    /// another user. Any thread may call it, but on the thread whose event loop serves the clients
    /// of that server, it can only time out. Nothing is thrown or logged.
    static bool Connect(const TString<wchar_t>& service, const TString<wchar_t>& text);

    /// Whether a server of this user listens with the name `service`, even if it is too busy to
    /// answer. False also when out of memory or descriptors. Sends nothing and does not wait. Any
    /// thread may call it. Nothing is thrown or logged.
    static bool IsServed(const TString<wchar_t>& service);
};

} // namespace Toolkit
