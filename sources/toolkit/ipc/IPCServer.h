#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/ipc/IPCConnectionEvent.h"
#include "toolkit/threading/EventNotifier.h"

#include <cstddef>
#include <memory>

namespace Toolkit {

class IPCInternalServer;

/// Receives the messages that `IPCClient::Connect` sends on the same machine and hands each to all
/// listeners, in the order in which they were added.
///
///     IPCServer server(L""); // the application's own service
///     server.AddListener(smart_ptr<IPCConnectionEvent>(new Commands()));
///     if (!server.Run())
///         return 1;
///     wxAppConsole::GetInstance()->MainLoop(); // calls Commands::OnExecute() with each message
///
/// A service is a socket file that only processes of the same user can use. A name without "/" is a
/// file in the working directory; a name that is a number is no service. A path longer than a
/// socket address allows (107 bytes of UTF-8 on Linux, 103 on macOS) is shortened, by server and
/// client alike, to its beginning and a hash: `GetSocketPath()`.
///
/// The event loop of wxWidgets serves the clients: nothing arrives before one runs. A program
/// without a user interface calls `wxInitialize()`, then Run(), then
/// `wxAppConsole::GetInstance()->MainLoop()`. Run and destroy the server on the thread that runs
/// loops, never in one of its own listeners, and destroy it before an application object that the
/// program runs itself. What a listener throws reaches the application object like an exception of
/// any event handler: the listeners after it miss that message, and its client is disconnected.
///
/// No client blocks the loop or keeps others out. The server disconnects a client
/// - whose message makes no progress for 2 seconds or is not complete after 30,
/// - whose message is longer than 16 Mi characters or does not fit into memory,
/// - that has been silent longest, when there are `c_maxSessions` clients or no descriptors are
///   left, and another client connects.
///
/// Only complete messages are handed on, in the order in which `IPCClient::Connect` sent them.
/// Nothing is logged, and only the constructor may throw.
class TOOLKIT_API IPCServer : public EventNotifier<IPCConnectionEvent> {
public:
    /// The limit of clients that are connected at the same time.
    static constexpr std::size_t c_maxSessions = 256;

    /// An empty `service` is the application's own: a file in the temporary directory of
    /// `PathManager` with the application's unique name and the extension ".ipc". Without a
    /// `PathManager` it stays empty, and Run() fails. When out of memory, Run() fails too, or the
    /// constructor throws `std::bad_alloc` if there is none for the lock of the listeners.
    ///
    /// Run() begins to listen.
    explicit IPCServer(const TString<wchar_t>& service);

    /// Disconnects all clients and removes the socket file, if it is still the one that Run() made.
    ~IPCServer() override;

    /// The path of the socket file that `service` names, for the constructor and for `IPCClient`;
    /// the application's own when `service` is empty. "example" gives "./example".
    ///
    /// Empty when the name is no service, and out of memory.
    static TString<wchar_t> GetSocketPath(const TString<wchar_t>& service);

    /// Begins to listen and returns at once; true when the server listens already.
    ///
    /// False when the file cannot be made, when a living server has the name, and when something
    /// else is in the file's place. The file of a server that has crashed is replaced; while
    /// another server does just that, Run() waits up to 2 seconds.
    bool Run();

    /// Hands `text` to every listener. Any thread may call it, whether the server listens or not.
    /// What a listener throws comes out.
    void SendExecuteEvent(const TString<wchar_t>& text);

private:
    std::unique_ptr<IPCInternalServer> m_internalServer;
    TString<wchar_t> m_service;
};

} // namespace Toolkit
