#include "LogFiles.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

#include "Failure.h"
#include "FileTime.h"
#include "VisibleText.h"

namespace Tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view c_extension = ".qvlog";
constexpr const char* c_logDirectory = "/tmp";

// Loggers write tick counts without leading zeros. A number of fewer than five digits is treated as
// part of the logger's name, such as a year: tick counts are that short only for ten seconds in 49
// days.
bool IsTickCount(std::string_view text)
{
    constexpr std::size_t minDigits = 5;

    std::uint32_t tick = 0;
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, tick);
    return text.size() >= minDigits && text.front() != '0' && next == end && error == std::errc();
}

// Returns "tool" for tool.qvlog and tool-1234560.qvlog; empty for a file without the extension.
std::string ParseLoggerName(std::string_view file)
{
    if (!file.ends_with(c_extension))
        return {};
    file.remove_suffix(c_extension.size());
    const std::size_t dash = file.rfind('-');
    const bool isFallback = dash != file.npos && dash > 0 && IsTickCount(file.substr(dash + 1));
    return std::string(isFallback ? file.substr(0, dash) : file);
}

// The name of a logger may itself end like that of a fallback file.
bool IsFileOfLog(const std::string& file, const LogName& name)
{
    if (name.name.empty())
        return file == name.file;
    return file == name.name + std::string(c_extension) || ParseLoggerName(file) == name.name;
}

std::vector<LogFileEntry> FindFilesWhere(const std::string& directory,
                                         const std::function<bool(const std::string&)>& isWanted,
                                         uid_t owner)
{
    std::vector<LogFileEntry> files;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat status {};
        const std::string path = entry->path();
        if (!isWanted(entry->path().filename()) || ::lstat(path.c_str(), &status) != 0)
            continue;
        if (S_ISREG(status.st_mode) && status.st_uid == owner)
            files.push_back({path, status.st_size, GetModificationTime(status), status.st_ino});
    }
    // The newest first; by path if they were written at the same time.
    std::sort(files.begin(), files.end(), [](const LogFileEntry& one, const LogFileEntry& other) {
        return std::tie(other.written.tv_sec, other.written.tv_nsec, one.path) <
               std::tie(one.written.tv_sec, one.written.tv_nsec, other.path);
    });
    return files;
}

// Returns the owner of a file, or this user if it does not exist.
uid_t FindOwner(const std::string& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_uid : ::geteuid();
}

// Whether `argument` is a path, not the name of a logger.
bool IsPath(const std::string& argument)
{
    std::error_code ignored;
    return argument.find('/') != std::string::npos || fs::exists(argument, ignored);
}

} // namespace

LogName ParseLogName(const std::string& argument)
{
    if (!IsPath(argument))
        return {c_logDirectory, argument, argument + std::string(c_extension), ::geteuid()};
    const fs::path path = argument;
    const std::string directory = path.has_parent_path() ? path.parent_path().string() : ".";
    return {directory, ParseLoggerName(path.filename().string()), path.filename(),
            FindOwner(argument)};
}

std::string FindLogPath(const std::string& argument)
{
    if (argument == "-" || IsPath(argument))
        return argument;
    const LogName name = ParseLogName(argument);
    const std::vector<LogFileEntry> files = FindFilesOfLog(name);
    if (files.empty())
        throw Failure("no log named \"" + argument + "\"; \"toolkit log\" lists the logs");
    const std::string& path = files.front().path;
    if (fs::path(path).filename() != name.file)
        std::cerr << "toolkit: reading " << MakeVisible(path) << std::endl;
    return path;
}

std::vector<LogFileEntry> FindFilesOfLog(const LogName& name)
{
    return FindFilesWhere(
        name.directory, [&name](const std::string& file) { return IsFileOfLog(file, name); },
        name.owner);
}

std::vector<LogFileEntry> FindFilesOfUser()
{
    return FindFilesWhere(
        c_logDirectory, [](const std::string& file) { return file.ends_with(c_extension); },
        ::geteuid());
}

} // namespace Tool
