#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "PlugIns.h"

class CommandOperation;
class CommandWorker;

/// Runs the commands that other starts of the host send, one at a time in the order in which they
/// come. All of its work but the commands themselves is done on the thread of the event loop, so
/// there is nothing to lock. As many commands wait as memory holds.
class CommandServer {
public:
    enum class End { NotServed, Quit, Restart };

    explicit CommandServer(const PlugIns& plugIns);
    ~CommandServer();

    CommandServer(const CommandServer&) = delete;
    CommandServer& operator=(const CommandServer&) = delete;

    /// Serves until a start with -quit or -restart comes, which waits for all commands that came
    /// before, or SIGINT, SIGTERM or SIGHUP, for which what runs and what waits is given up. A
    /// command that does not notice within 3 seconds is left behind: the process ends without it.
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
    std::unique_ptr<Grace> m_grace;       // since the host is to stop
    std::unique_ptr<Deadline> m_deadline; // since a signal has come
    End m_end = End::NotServed;
};
