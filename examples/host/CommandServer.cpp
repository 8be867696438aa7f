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

#include "CommandOperation.h"
#include "HandOver.h"
#include "StopSignals.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace {

// Reports start and end of a command to the user and the log, on the thread that runs it.
class CommandReport : public BackgroundOperationHandler {
public:
    explicit CommandReport(const CommandOperation& operation) : m_operation(operation) {}

    void OnOperationStarted() override
    {
        Print(m_operation.GetTitle() + L": started");
        TOOLKIT_LOG(SeverityInfo) << MakeVisible(m_operation.GetTitle() + L": started by " +
                                                 m_operation.GetLine())
                                  << ILogger::c_strLogToken3;
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

/// The thread of one command.
class CommandWorker : public Thread {
public:
    /// Once the command has ended, `onEnded` is called on the thread of the event loop.
    template <typename Action>
    CommandWorker(unsigned int id, const Text& line, const HostPlugIn::Command* command,
                  const std::atomic<bool>& isCancelled, Action onEnded)
        : m_operation(id, line, command, isCancelled)
    {
        m_operation.AddListener(
            smart_ptr<BackgroundOperationHandler>(new CommandReport(m_operation)));
        m_operation.AddListener(smart_ptr<BackgroundOperationHandler>(new EndCall(onEnded)));
    }

    // The thread uses members of this class, so it has to end before they are destroyed.
    ~CommandWorker() override { Wait(); }

    CommandOperation& GetOperation() { return m_operation; }

protected:
    int DoWork() override
    {
        m_operation.Perform();
        return 0;
    }

private:
    class EndCall : public BackgroundOperationHandler {
    public:
        explicit EndCall(std::function<void()> action) : m_action(std::move(action)) {}

        void OnOperationStarted() override {}
        void OnOperationEnded() override { wxAppConsole::GetInstance()->CallAfter(m_action); }

    private:
        const std::function<void()> m_action;
    };

    CommandOperation m_operation;
};

// Passes what a client sends on to the server.
class CommandServer::Receiver : public IPCConnectionEvent {
public:
    explicit Receiver(CommandServer& server) : m_server(server) {}

    void OnExecute(const Text& text) override { m_server.Receive(text); }

private:
    CommandServer& m_server;
};

// Removes the socket of a host that stops, and gives clients that are already connected time to
// send their lines.
class CommandServer::Grace : public wxTimer {
public:
    explicit Grace(CommandServer& server) : m_server(server)
    {
        constexpr int graceMs = 200;

        Directory::RemoveFile(GetServicePath());
        StartOnce(graceMs);
    }

    void Notify() override { m_server.Work(); }

private:
    CommandServer& m_server;
};

// Limits the time in which a command must react to its cancellation.
class CommandServer::Deadline : public wxTimer {
public:
    explicit Deadline(CommandServer& server) : m_server(server)
    {
        constexpr int limitMs = 3000;

        StartOnce(limitMs);
    }

    void Notify() override { m_server.EndWithoutCommand(); }

private:
    CommandServer& m_server;
};

CommandServer::CommandServer(const PlugIns& plugIns) : m_plugIns(plugIns) {}

CommandServer::~CommandServer() = default;

CommandServer::End CommandServer::Run()
{
    const StopSignals signals([this] { Cancel(); });
    IPCServer server(GetServicePath());
    server.AddListener(smart_ptr<IPCConnectionEvent>(new Receiver(*this)));
    if (!server.Run())
        return End::NotServed;

    Print(L"Serving at " + GetServicePath());
    TOOLKIT_LOG(SeverityInfo) << L"Serving at " << GetServicePath() << ILogger::c_strLogToken3;
    wxAppConsole::GetInstance()->MainLoop();
    return m_end;
}

void CommandServer::Receive(const Text& line)
{
    // Far more than a command needs, far less than a client may send.
    constexpr std::size_t longestLine = 1 << 20;

    if (line.size() > longestLine)
        Fail(L"A command must not be longer than 1 Mi characters");
    else if (line == c_quit)
        Stop(End::Quit);
    else if (line == c_restart)
        Stop(End::Restart);
    else if (line == c_serve)
        Print(L"Already serving");
    else
        m_waitingLines.push_back(line);
    Work();
}

void CommandServer::Stop(End end)
{
    m_end = end;
    if (!m_grace)
        m_grace = std::make_unique<Grace>(*this);
}

void CommandServer::Cancel()
{
    Print(L"Stopping; another signal ends the host at once");
    m_isCancelled = true;
    m_deadline = std::make_unique<Deadline>(*this);
    Stop(End::Quit);
    Work();
}

// Starts the next command unless one runs. Ends the loop when nothing is left to do.
void CommandServer::Work()
{
    if (m_worker)
        return;
    if (m_waitingLines.empty()) {
        if (m_grace && !m_grace->IsRunning())
            wxAppConsole::GetInstance()->ExitMainLoop();
        return;
    }
    const Text line = m_waitingLines.front();
    m_waitingLines.pop_front();
    m_worker = std::make_unique<CommandWorker>(++m_lastId, line,
                                               m_plugIns.FindCommand(GetCommandWord(line)),
                                               m_isCancelled, [this] { OnCommandEnded(); });
    if (!m_worker->Run()) {
        Fail(L"No thread can be started for: " + line);
        wxAppConsole::GetInstance()->CallAfter([this] { OnCommandEnded(); });
    }
}

void CommandServer::OnCommandEnded()
{
    m_worker.reset();
    Work();
}

// A thread cannot be ended, and a plug-in whose code runs cannot be unloaded. So this only removes
// the half-written result and completes the log.
void CommandServer::EndWithoutCommand()
{
    CommandOperation& operation = m_worker->GetOperation();
    operation.Abandon();
    Fail(operation.GetTitle() + L": does not stop; the host ends without it");
    ILogger::SetLogger(smart_ptr<ILogger>());
    std::_Exit(EXIT_FAILURE);
}
