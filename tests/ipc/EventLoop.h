#pragma once

#include "toolkit/ipc/IPCServer.h"

#include <wx/app.h>
#include <wx/evtloop.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
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
class ReceivedTexts {
public:
    void Add(const TString<wchar_t>& text)
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_texts.push_back(text);
        m_changed.notify_all();
    }

    /// Waits until `count` messages have arrived, for c_hangLimit at most. Returns all that have
    /// arrived.
    std::vector<std::wstring> Await(std::size_t count)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, c_hangLimit, [&] { return m_texts.size() >= count; });
        return m_texts;
    }

    /// Returns the messages that have arrived so far.
    std::vector<std::wstring> All() { return Await(0); }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::wstring> m_texts; // guarded by m_mutex
};

/// Calls a function with each message.
class Listener : public IPCConnectionEvent {
public:
    explicit Listener(std::function<void(const TString<wchar_t>&)> action)
        : m_action(std::move(action))
    {
    }

    void OnExecute(const TString<wchar_t>& text) override { m_action(text); }

private:
    std::function<void(const TString<wchar_t>&)> m_action;
};

inline smart_ptr<IPCConnectionEvent>
MakeListener(std::function<void(const TString<wchar_t>&)> action)
{
    return smart_ptr<IPCConnectionEvent>(new Listener(std::move(action)));
}

/// Returns a listener that adds each message to `texts`.
inline smart_ptr<IPCConnectionEvent> Keep(ReceivedTexts& texts)
{
    return MakeListener([&texts](const TString<wchar_t>& text) { texts.Add(text); });
}

} // namespace Toolkit::TestSupport
