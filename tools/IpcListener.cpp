#include "IpcListener.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/timer.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <sys/stat.h>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/ipc/IPCClient.h>
#include <toolkit/ipc/IPCServer.h>
#include <unistd.h>

#include "Action.h"
#include "Failure.h"
#include "StopSignals.h"
#include "VisibleText.h"

using namespace Toolkit;

namespace Tool {
namespace {

class Receiver : public IPCConnectionEvent {
public:
    explicit Receiver(IpcListener& listener) : m_listener(listener) {}

    void OnExecute(const TString<wchar_t>& text) override { m_listener.Receive(text); }

private:
    IpcListener& m_listener;
};

// Checks regularly whether a signal has arrived, or standard output has lost its reader.
class StopTimer : public wxTimer {
public:
    explicit StopTimer(IpcListener& listener) : m_listener(listener)
    {
        constexpr int intervalMs = 50;

        Start(intervalMs);
    }

    void Notify() override { m_listener.CheckStopConditions(); }

private:
    IpcListener& m_listener;
};

// Returns ": " and the reason why no server can listen at `path`; empty if the reason is unknown.
std::string DescribeListenError(const TString<wchar_t>& service, const std::string& path)
{
    if (IPCClient::IsServed(service))
        return ": another server listens there";
    struct stat status {};
    if (::lstat(path.c_str(), &status) == 0 &&
        (!S_ISSOCK(status.st_mode) || status.st_uid != ::geteuid()))
        return ": the file exists and is not a socket of this user";
    const std::string directory = path.substr(0, path.rfind('/') + 1);
    if (::access(directory.c_str(), W_OK | X_OK) != 0)
        return std::string(": ") + std::strerror(errno);
    return "";
}

} // namespace

int IpcListener::Run(const TString<wchar_t>& service)
{
    const wxInitializer initializer;
    if (!initializer.IsOk())
        throw Failure("cannot start wxWidgets");
    const StopSignals signals;
    const std::string path = UTF8::ToUTF8(IPCServer::GetSocketPath(service));
    IPCServer server(service);
    server.AddListener(smart_ptr<IPCConnectionEvent>(new Receiver(*this)));
    if (!server.Run())
        throw Failure("cannot listen at " + path + DescribeListenError(service, path));
    std::cerr << "toolkit: listening at " << MakeVisible(path) << std::endl;
    const StopTimer timer(*this);
    wxAppConsole::GetInstance()->MainLoop();
    if (m_failure)
        std::rethrow_exception(m_failure);
    return ExitSuccess;
}

// Catches everything: an exception must not pass through the event loop.
void IpcListener::Receive(const TString<wchar_t>& text)
try {
    // More messages may arrive before the loop ends.
    if (m_maxMessages > 0 && m_messages == m_maxMessages)
        return;
    ++m_messages;
    m_output.WriteVisible(UTF8::ToUTF8(text));
    m_output.Write("\n");
    m_output.Flush();
    if (m_messages == m_maxMessages)
        EndEventLoop();
} catch (...) {
    m_failure = std::current_exception();
    EndEventLoop();
}

void IpcListener::CheckStopConditions()
try {
    m_output.Sleep(0);
    if (StopSignals::IsRequested())
        EndEventLoop();
} catch (...) {
    m_failure = std::current_exception();
    EndEventLoop();
}

void IpcListener::EndEventLoop()
{
    wxAppConsole::GetInstance()->ExitMainLoop();
}

} // namespace Tool
