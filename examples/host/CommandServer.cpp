#include "CommandServer.h"

#include <wx/app.h>
#include <wx/timer.h>

#include <cstdlib>
#include <functional>
#include <toolkit/encoding/StringConvert.h>
#include <toolkit/files/Directory.h>
#include <toolkit/ipc/IPCServer.h>
#include <toolkit/logging/Log.h>
#include <toolkit/threading/Thread.h>
#include <utility>

#include "CommandOperation.h"
#include "HandOver.h"
#include "StopSignals.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace {

// Prints and logs the start and the end of a command, on the thread that runs it.
class CommandReporter : public BackgroundOperationHandler {
public:
    explicit CommandReporter(const CommandOperation& operation) : m_operation(operation) {}

    void OnOperationStarted() override
    {
        Print(m_operation.GetTitle() + L": started");
        const Text message = MakeVisible(m_operation.GetTitle() + L": started, command line: " +
                                         m_operation.GetLine());
        TOOLKIT_LOG(SeverityInfo) << message << ILogger::c_strLogToken3;
    }

    void OnOperationEnded() override
    {
        const Text message = MakeVisible(m_operation.GetTitle() + L": " + m_operation.GetOutcome());
        TOOLKIT_LOG(m_operation.HasSucceeded() ? SeverityInfo : SeverityError)
            << message << ILogger::c_strLogToken3;
        Print(message);
    }

private:
    const CommandOperation& m_operation;
};

} // namespace

/// Runs one command on its own thread.
class CommandWorker : public Thread {
public:
    /// When the command has ended, calls `onEnded` on the thread of the event loop.
    CommandWorker(unsigned int id, const Text& line, const HostPlugIn::Command* command,
                  const std::atomic<bool>& isCancelled, std::function<void()> onEnded)
        : m_operation(id, line, command, isCancelled)
    {
        m_operation.AddListener(
            smart_ptr<BackgroundOperationHandler>(new CommandReporter(m_operation)));
        m_operation.AddListener(
            smart_ptr<BackgroundOperationHandler>(new EndListener(std::move(onEnded))));
    }

    // The thread uses members of this class, so it must end before they are destroyed.
    ~CommandWorker() override { Wait(); }

    CommandOperation& GetOperation() { return m_operation; }

protected:
    int DoWork() override
    {
        m_operation.Perform();
        return 0;
    }

private:
    class EndListener : public BackgroundOperationHandler {
    public:
        explicit EndListener(std::function<void()> action) : m_action(std::move(action)) {}

        void OnOperationStarted() override {}
        void OnOperationEnded() override { wxAppConsole::GetInstance()->CallAfter(m_action); }

    private:
        const std::function<void()> m_action;
    };

    CommandOperation m_operation;
};

// Hands the server each line that a client sends.
class CommandServer::Receiver : public IPCConnectionEvent {
public:
    explicit Receiver(CommandServer& server) : m_server(server) {}

    void OnExecute(const Text& text) override { m_server.Receive(text); }

private:
    CommandServer& m_server;
};

// Removes the socket when the host begins to stop. Clients that are already connected have 200 ms
// to send their lines.
class CommandServer::GracePeriod : public wxTimer {
public:
    explicit GracePeriod(CommandServer& server) : m_server(server)
    {
        constexpr int graceMs = 200;

        Directory::RemoveFile(GetServicePath());
        StartOnce(graceMs);
    }

    void Notify() override { m_server.StartNextCommandOrExit(); }

private:
    CommandServer& m_server;
};

// Limits how long a cancelled command may keep running.
class CommandServer::Deadline : public wxTimer {
public:
    explicit Deadline(CommandServer& server) : m_server(server)
    {
        constexpr int limitMs = 3000;

        StartOnce(limitMs);
    }

    void Notify() override { m_server.ExitWithoutWaiting(); }

private:
    CommandServer& m_server;
};

CommandServer::CommandServer(const PlugIns& plugIns) : m_plugIns(plugIns) {}

CommandServer::~CommandServer() = default;

CommandServer::ServeResult CommandServer::Run()
{
    const StopSignals signals([this] { Cancel(); });
    IPCServer server(GetServicePath());
    server.AddListener(smart_ptr<IPCConnectionEvent>(new Receiver(*this)));
    if (!server.Run())
        return ServeResult::Failed;

    Print(L"Serving at " + GetServicePath());
    TOOLKIT_LOG(SeverityInfo) << L"Serving at " << GetServicePath() << ILogger::c_strLogToken3;
    wxAppConsole::GetInstance()->MainLoop();
    return m_result;
}

void CommandServer::Receive(const Text& line)
{
    // Far more than a command needs, and far less than IPCServer allows.
    constexpr std::size_t maxLineLength = 1 << 20;

    if (line.size() > maxLineLength)
        Fail(L"A command was ignored: it has more than 1,048,576 characters");
    else if (line == c_quit)
        Stop(ServeResult::Quit);
    else if (line == c_restart)
        Stop(ServeResult::Restart);
    else if (line == c_serve)
        Print(L"Already serving");
    else
        m_queuedLines.push_back(line);
    StartNextCommandOrExit();
}

void CommandServer::Stop(ServeResult result)
{
    m_result = result;
    if (!m_gracePeriod)
        m_gracePeriod = std::make_unique<GracePeriod>(*this);
}

void CommandServer::Cancel()
{
    Print(L"Stopping; another signal ends the host immediately");
    m_isCancelled = true;
    m_deadline = std::make_unique<Deadline>(*this);
    Stop(ServeResult::Quit);
    StartNextCommandOrExit();
}

// Starts the next command unless one is running. Exits the event loop once the host is stopping,
// its grace period is over and the queue is empty.
void CommandServer::StartNextCommandOrExit()
{
    if (m_worker)
        return;
    if (m_queuedLines.empty()) {
        if (m_gracePeriod && !m_gracePeriod->IsRunning())
            wxAppConsole::GetInstance()->ExitMainLoop();
        return;
    }
    const Text line = m_queuedLines.front();
    m_queuedLines.pop_front();
    m_worker = std::make_unique<CommandWorker>(++m_lastId, line,
                                               m_plugIns.FindCommand(GetCommandWord(line)),
                                               m_isCancelled, [this] { OnCommandEnded(); });
    if (!m_worker->Run()) {
        Fail(L"Cannot start a thread for: " + line);
        wxAppConsole::GetInstance()->CallAfter([this] { OnCommandEnded(); });
    }
}

void CommandServer::OnCommandEnded()
{
    m_worker.reset();
    StartNextCommandOrExit();
}

// Neither killing the thread nor unloading the plug-in is safe while the plug-in's code runs. So
// this discards the incomplete result, closes the log and ends the process. Does nothing if no
// command is running.
void CommandServer::ExitWithoutWaiting()
{
    if (!m_worker)
        return;
    CommandOperation& operation = m_worker->GetOperation();
    operation.Abandon();
    Fail(operation.GetTitle() + L": did not stop in time; the host ends without waiting for it");
    ILogger::SetLogger(smart_ptr<ILogger>());
    std::_Exit(EXIT_FAILURE);
}
