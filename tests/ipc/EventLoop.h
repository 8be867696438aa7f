#pragma once

#include "toolkit/ipc/IPCServer.h"

#include <wx/app.h>
#include <wx/evtloop.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit::TestSupport {

/// Time after which a test fails instead of hanging.
constexpr std::chrono::seconds c_hangLimit{60};

/// Runs an event loop on this thread while `work` runs on another one.
inline void ServeWhile(const std::function<void()>& work)
{
    wxConsoleEventLoop loop;
    std::thread thread([&] {
        work();
        wxAppConsole::GetInstance()->CallAfter([&] { loop.Exit(); });
    });
    loop.Run();
    thread.join();
}

/// Collects the messages that a server receives.
class ReceivedMessages {
public:
    void Add(const TString<wchar_t>& message)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_messages.push_back(message);
        m_changed.notify_all();
    }

    /// Waits until `count` messages have arrived, for c_hangLimit at most. Returns all that have
    /// arrived.
    std::vector<std::wstring> Await(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, c_hangLimit, [&] { return m_messages.size() >= count; });
        return m_messages;
    }

    /// Returns the messages that have arrived so far.
    std::vector<std::wstring> All() { return Await(0); }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::wstring> m_messages; // guarded by m_mutex
};

/// Calls a function with each message.
class Listener : public IPCConnectionEvent {
public:
    explicit Listener(std::function<void(const TString<wchar_t>&)> action)
        : m_action(std::move(action))
    {
    }

    void OnExecute(const TString<wchar_t>& message) override { m_action(message); }

private:
    std::function<void(const TString<wchar_t>&)> m_action;
};

inline smart_ptr<IPCConnectionEvent>
CreateListener(std::function<void(const TString<wchar_t>&)> action)
{
    return smart_ptr<IPCConnectionEvent>(new Listener(std::move(action)));
}

/// Returns a listener that adds each message to `messages`.
inline smart_ptr<IPCConnectionEvent> CreateCollector(ReceivedMessages& messages)
{
    return CreateListener([&messages](const TString<wchar_t>& message) { messages.Add(message); });
}

} // namespace Toolkit::TestSupport
