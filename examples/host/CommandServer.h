#pragma once

#include <atomic>
#include <deque>
#include <memory>

#include "PlugIns.h"

class CommandOperation;
class CommandWorker;

/// Runs the commands that other host processes send, one at a time and in the order of arrival.
/// Everything but the commands themselves runs on the thread of the event loop, so no lock is
/// needed. The queue of commands is unlimited.
class CommandServer {
public:
    /// `Failed` if the host cannot listen at its socket; `Quit` after -quit or a signal.
    enum class ServeResult { Failed, Quit, Restart };

    explicit CommandServer(const PlugIns& plugIns);
    ~CommandServer();

    CommandServer(const CommandServer&) = delete;
    CommandServer& operator=(const CommandServer&) = delete;

    /// Serves until another host sends -quit or -restart, and then lets all queued commands finish.
    /// SIGINT, SIGTERM and SIGHUP cancel the running command and the queued ones instead. If the
    /// running command does not stop within 3 seconds, the process exits anyway.
    ServeResult Run();

private:
    class Receiver;
    class GracePeriod;
    class Deadline;

    void Receive(const Text& line);
    void Stop(ServeResult result);
    void Cancel();
    void StartNextCommandOrExit();
    void OnCommandEnded();
    void ExitWithoutWaiting();

    const PlugIns& m_plugIns;
    std::deque<Text> m_queuedLines;
    std::unique_ptr<CommandWorker> m_worker; // null while no command runs
    unsigned int m_lastId = 0;
    std::atomic<bool> m_isCancelled = false;
    std::unique_ptr<GracePeriod> m_gracePeriod; // null until the host begins to stop
    std::unique_ptr<Deadline> m_deadline;       // null until a signal arrives
    ServeResult m_result = ServeResult::Failed;
};
