#include "toolkit/logging/FileLogger.h"
#include "toolkit/threading/EventNotifier.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "scale/Operations.h"

namespace Scale {
namespace {

using namespace Toolkit;
using Text = TString<wchar_t>;

class Listener {
public:
    virtual ~Listener() = default;
    virtual void OnEvent() { ++m_count; }

private:
    int m_count = 0;
};

class Notifier : public EventNotifier<Listener> {
public:
    void Send()
    {
        Notify([](Listener& listener) { listener.OnEvent(); });
    }
};

std::vector<smart_ptr<Listener>> CreateListeners(int count)
{
    std::vector<smart_ptr<Listener>> listeners;
    for (int i = 0; i < count; ++i)
        listeners.push_back(smart_ptr<Listener>(new Listener()));
    return listeners;
}

Run PrepareNotify(int count)
{
    const auto notifier = std::make_shared<Notifier>();
    for (const smart_ptr<Listener>& listener : CreateListeners(count))
        notifier->AddListener(listener);
    return [notifier] { notifier->Send(); };
}

// Returns a run that adds listeners and removes them in the same order.
Run PrepareListeners(int count)
{
    const auto listeners =
        std::make_shared<std::vector<smart_ptr<Listener>>>(CreateListeners(count));
    return [listeners] {
        Notifier notifier;
        for (const smart_ptr<Listener>& listener : *listeners)
            notifier.AddListener(listener);
        for (const smart_ptr<Listener>& listener : *listeners)
            Require(notifier.RemoveListener(listener));
    };
}

constexpr unsigned int c_noLimit = 0xFFFFFFFF;
const Text c_line = std::wstring(61, L'x') + L'\n';

// A logger and its file, which the destructor removes.
struct TemporaryLog {
    ~TemporaryLog() { std::filesystem::remove(path); }

    FileLogger logger{SeverityInfo, L"toolkit-scale", c_noLimit};
    const std::filesystem::path path{std::wstring(logger.GetPath(10'000))};
};

void WriteLines(FileLogger& logger, int count)
{
    for (int i = 0; i < count; ++i)
        logger.Write(c_line);
}

// Returns a run that logs lines and waits until all of them are in the file.
Run PrepareLog(int lines)
{
    const auto log = std::make_shared<TemporaryLog>();
    return [lines, log] {
        const auto length = std::filesystem::file_size(log->path) + lines * c_line.size();
        WriteLines(log->logger, lines);
        while (std::filesystem::file_size(log->path) < length)
            std::this_thread::sleep_for(std::chrono::microseconds(100));
    };
}

// Returns a run that logs lines to a logger that cannot open its file: they stay in its queue.
Run PrepareLogQueue(int lines)
{
    return [lines] {
        FileLogger logger(SeverityInfo, L"no/such/directory/log", c_noLimit);
        WriteLines(logger, lines);
    };
}

} // namespace

void AddThreadOperations(Operations& operations)
{
    operations.push_back({"EventNotifier Notify (cache)", c_sizes, PrepareNotify});
    operations.push_back({"EventNotifier Add and Remove", c_sizes, PrepareListeners});
    operations.push_back({"FileLogger, in the file", c_sizes, PrepareLog});
    operations.push_back({"FileLogger, in the queue", c_sizes, PrepareLogQueue});
}

} // namespace Scale
