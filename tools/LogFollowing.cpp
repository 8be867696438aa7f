#include "LogFollowing.h"

#include <algorithm>
#include <fcntl.h>
#include <iostream>
#include <list>
#include <utility>

#include "LogHistory.h"
#include "StopSignals.h"
#include "VisibleText.h"

namespace Tool {
namespace {

constexpr int c_pollIntervalMs = 20;
constexpr int c_pollsPerScan = 5;

// Follows all files of a log.
class Followers {
public:
    Followers(LogName name, LogFollower first, const std::vector<LogFileEntry>& known,
              LogPrinter& printer)
        : m_name(std::move(name)), m_printer(printer)
    {
        m_followers.push_back(std::move(first));
        // The existing lines of these files are not printed.
        for (const LogFileEntry& file : known)
            Add(file, false);
    }

    void Poll()
    {
        for (LogFollower& follower : m_followers)
            follower.Poll();
        m_followers.remove_if([](const LogFollower& follower) { return follower.IsRemoved(); });
    }

    // Adds files that a logger has created since the last scan.
    void Scan()
    {
        for (const LogFileEntry& file : FindFilesOfLog(m_name))
            Add(file, true);
    }

private:
    void Add(const LogFileEntry& entry, bool isNew)
    {
        const auto isKnown = [&entry](const LogFollower& follower) {
            return follower.GetInode() == entry.inode;
        };
        if (std::any_of(m_followers.begin(), m_followers.end(), isKnown))
            return;
        Descriptor file(::open(entry.path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (!file.IsOpen())
            return;
        const LogPosition position = isNew ? LogPosition() : FindPosition(file.Get());
        if (isNew)
            std::cerr << "toolkit: the log continues in " << MakeVisible(entry.path) << std::endl;
        m_followers.emplace_back(std::move(file), position, m_printer);
    }

    const LogName m_name;
    LogPrinter& m_printer;
    std::list<LogFollower> m_followers;
};

} // namespace

void Follow(const LogName& name, LogFollower first, const std::vector<LogFileEntry>& known,
            LogPrinter& printer, Output& output)
{
    Followers followers(name, std::move(first), known, printer);
    for (int round = 1; !StopSignals::IsRequested(); ++round) {
        followers.Poll();
        if (round % c_pollsPerScan == 0)
            followers.Scan();
        output.Flush();
        output.Sleep(c_pollIntervalMs);
    }
}

} // namespace Tool
