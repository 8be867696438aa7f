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
/// file in the working directory; a number is not a valid name. A path longer than a socket
/// address allows (107 bytes of UTF-8 on Linux, 103 on macOS) is shortened, by server and client
/// alike, to its beginning and a hash; GetSocketPath() returns the result.
///
/// The event loop of wxWidgets serves the clients: no message arrives while none runs. A program
/// without a user interface calls `wxInitialize()`, then Run(), then
/// `wxAppConsole::GetInstance()->MainLoop()`. Call Run() and destroy the server on the thread that
/// runs the loop, and never in one of the server's listeners. In a program that creates its own
/// application object, destroy the server first. An exception from a listener reaches the
/// application object like one from any event handler: later listeners miss the message, and its
/// sender is disconnected.
///
/// No client blocks the loop or keeps others out. The server disconnects a client
/// - that sends nothing for 2 seconds after connecting,
/// - whose message makes no progress for 2 seconds or is not complete after 30,
/// - whose message is longer than 16 Mi characters or does not fit into memory,
/// - that has been silent longest, when there are `c_maxSessions` clients or no descriptors are
///   left, and another client connects.
///
/// Only complete messages are handed on, in the order in which `IPCClient::Connect` sent them.
/// Nothing is logged. Only the constructor, AddListener() and listeners may throw.
class TOOLKIT_API IPCServer : public EventNotifier<IPCConnectionEvent> {
public:
    /// Maximum number of clients that are connected at the same time.
    static constexpr std::size_t c_maxSessions = 256;

    /// Stores the name; Run() starts listening.
    ///
    /// An empty `service` means the application's own: a file in the temporary directory of
    /// `PathManager` with the application's unique name and the extension ".ipc". Without a
    /// `PathManager`, Run() then fails. When out of memory, the constructor throws
    /// `std::bad_alloc`, or creates a server whose Run() fails.
    explicit IPCServer(const TString<wchar_t>& service);

    /// Disconnects all clients and removes the socket file if it is still the one Run() created.
    ~IPCServer() override;

    /// Returns the path of the socket file that `service` names; if `service` is empty, that of the
    /// application's own service. "example" gives "./example". The constructor and `IPCClient` also
    /// accept the path as a name.
    ///
    /// Empty if the name is not valid or contains a surrogate, if `service` is empty and there is
    /// no `PathManager`, and when out of memory.
    static TString<wchar_t> GetSocketPath(const TString<wchar_t>& service);

    /// Starts listening; the event loop then serves the clients. True if the server listens, even
    /// if it already did. If its socket file has been removed or replaced, disconnects all clients
    /// and starts listening again.
    ///
    /// False if the socket file cannot be created, if another server listens with the name, if
    /// something else exists at the path, if wxWidgets cannot be started, and when out of memory.
    /// The file of a crashed server is replaced. While another server starts with the same name,
    /// Run() waits for it for up to 2 seconds, and then returns false.
    bool Run();

    /// Passes the message `text` to every listener. Any thread may call it, whether the server
    /// listens or not. Exceptions from listeners reach the caller.
    void SendExecuteEvent(const TString<wchar_t>& text);

private:
    std::unique_ptr<IPCInternalServer> m_internalServer;
    TString<wchar_t> m_service;
};

} // namespace Toolkit
