#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"

namespace Toolkit {

/// Sends messages to an `IPCServer`.
class TOOLKIT_API IPCClient {
public:
    /// How long one call of Connect() takes at most.
    static constexpr unsigned int c_timeoutMs = 10000;

    /// Sends `text`, up to its first null character, to the server that runs under the name
    /// `service`. True when all of it was sent, which is before the server's listeners have it.
    ///
    /// False when no server of this user answers, when the server disconnects or stops answering,
    /// after `c_timeoutMs`, when `text` is longer than 16 MiB in UTF-8, and out of memory. Refuses
    /// a socket file that is a symbolic link or another user's. Any thread may call it; on the
    /// thread whose event loop serves the same server it can only time out. Nothing is thrown or
    /// logged.
    static bool Connect(const TString<wchar_t>& service, const TString<wchar_t>& text);

    /// Whether a server of this user listens under the name `service`, even if it is too busy to
    /// answer. Sends nothing and returns at once. Any thread may call it. Nothing is thrown or
    /// logged.
    static bool IsServed(const TString<wchar_t>& service);
};

} // namespace Toolkit
