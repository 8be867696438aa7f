#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "PlugIns.h"

class CommandOperation;
class CommandWorker;

/// Runs the commands that other starts of the host send, one at a time and in the order of arrival.
/// Everything but the commands themselves runs on the thread of the event loop, so there is nothing
/// to lock. The queue of commands is unlimited.
class CommandServer {
public:
    enum class End { NotServed, Quit, Restart };

    explicit CommandServer(const PlugIns& plugIns);
    ~CommandServer();

    CommandServer(const CommandServer&) = delete;
    CommandServer& operator=(const CommandServer&) = delete;

    /// Serves until a start with -quit or -restart, which lets all earlier commands finish, or
    /// until SIGINT, SIGTERM or SIGHUP, which cancels the running command and those that wait. If a
    /// command does not react within 3 seconds, the process ends without it.
    End Run();

private:
    class Receiver;
    class Grace;
    class Deadline;

    void Receive(const Text& line);
    void Stop(End end);
    void Cancel();
    void Work();
    void OnCommandEnded();
    [[noreturn]] void EndWithoutCommand();

    const PlugIns& m_plugIns;
    std::deque<Text> m_waitingLines;
    std::unique_ptr<CommandWorker> m_worker; // while a command runs
    unsigned int m_lastId = 0;
    std::atomic<bool> m_isCancelled = false;
    std::unique_ptr<Grace> m_grace;       // once the host is to stop
    std::unique_ptr<Deadline> m_deadline; // once a signal has arrived
    End m_end = End::NotServed;
};
