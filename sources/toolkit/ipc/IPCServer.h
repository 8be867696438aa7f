#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/ipc/IPCConnectionEvent.h"
#include "toolkit/threading/EventNotifier.h"

#include <memory>

namespace Toolkit {

class IPCInternalServer;

/// Receives the texts that `IPCClient::Connect` sends on the same machine and hands each to all
/// listeners, in the order in which they were added.
///
/// A service is a socket file that only processes of the same user reach. A name without "/" means
/// a file in the working directory; a name that is a number is no service. A path of more than 107
/// bytes in UTF-8 is shortened, by server and client alike, to its beginning and a hash.
///
/// The framework's event loop serves the clients: nothing arrives before one runs. A program
/// without a user interface calls `wxInitialize()`, then Run(), then
/// `wxAppConsole::GetInstance()->MainLoop()`. The server is run and destroyed on the one thread
/// that runs loops, never by one of its own listeners, and destroyed ahead of an application object
/// that the program runs itself. What a listener throws reaches the application object like an
/// exception of any event handler; the listeners after it miss that text.
///
/// No client blocks the loop: a message that makes no progress for 2 seconds ends its connection,
/// and so does a text of more than 16 Mi characters. Only texts that have arrived as a whole are
/// handed on. Nothing is thrown or logged.
class TOOLKIT_API IPCServer : public EventNotifier<IPCConnectionEvent> {
public:
    /// An empty `service` stands for the application's own: a file in the temporary directory of
    /// `PathManager`, called as its unique name says, with the extension ".ipc". Without a
    /// `PathManager` it stays empty and Run() fails.
    ///
    /// Listening begins with Run().
    explicit IPCServer(const TString<wchar_t>& service);

    /// Ends all connections and removes the socket file, when it is still the one that was made.
    ~IPCServer() override;

    /// Begins to listen and returns at once; true when the server listens already.
    ///
    /// False when the file cannot be made, when a living server answers under this name, and when
    /// something else stands in the file's place. The file of a server that has crashed is
    /// replaced; while another process does just that, Run() waits 2 seconds at most. The lock that
    /// servers use for it, an empty file in the home directory, stays.
    bool Run();

    /// Hands `text` to every listener. Any thread may call it, whether the server listens or not.
    /// What a listener throws comes out.
    void SendExecuteEvent(const TString<wchar_t>& text);

private:
    std::unique_ptr<IPCInternalServer> m_internalServer;
    TString<wchar_t> m_service;
};

} // namespace Toolkit
