#include "LogFiles.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "Failure.h"

namespace Tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view c_extension = ".qvlog";
constexpr const char* c_logDirectory = "/tmp";

bool IsNumber(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char digit) { return digit >= '0' && digit <= '9'; });
}

bool EndsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// "tool" for tool.qvlog and tool-1234.qvlog; empty for a file that is called otherwise.
std::string ParseLoggerName(std::string_view file)
{
    if (!EndsWith(file, c_extension))
        return {};
    file.remove_suffix(c_extension.size());
    const std::size_t dash = file.rfind('-');
    const bool isFallback = dash != file.npos && dash > 0 && IsNumber(file.substr(dash + 1));
    return std::string(isFallback ? file.substr(0, dash) : file);
}

bool IsOfLog(const std::string& file, const LogName& name)
{
    return name.name.empty()
               ? file == name.file
               : EndsWith(file, c_extension) && (file == name.name + std::string(c_extension) ||
                                                 ParseLoggerName(file) == name.name);
}

std::vector<LogFileEntry> FindFilesWhere(const std::string& directory,
                                         const std::function<bool(const std::string&)>& isWanted,
                                         bool isOwnOnly)
{
    std::vector<LogFileEntry> files;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        struct stat status {};
        const std::string path = entry->path();
        if (!isWanted(entry->path().filename()) || ::lstat(path.c_str(), &status) != 0)
            continue;
        if (S_ISREG(status.st_mode) && (!isOwnOnly || status.st_uid == ::geteuid()))
            files.push_back({path, status.st_size, status.st_mtime, status.st_ino});
    }
    std::sort(files.begin(), files.end(), [](const LogFileEntry& one, const LogFileEntry& other) {
        return one.written != other.written ? one.written > other.written : one.path < other.path;
    });
    return files;
}

} // namespace

LogName ParseLogName(const std::string& argument)
{
    const fs::path path = argument;
    std::error_code ignored;
    if (argument.find('/') == std::string::npos && !fs::exists(path, ignored))
        return {c_logDirectory, argument, argument + std::string(c_extension)};
    const std::string directory = path.has_parent_path() ? path.parent_path().string() : ".";
    return {directory, ParseLoggerName(path.filename().string()), path.filename()};
}

std::string FindLogPath(const std::string& argument)
{
    std::error_code ignored;
    const bool isPath = argument.find('/') != std::string::npos || fs::exists(argument, ignored);
    if (argument == "-" || isPath)
        return argument;
    const std::vector<LogFileEntry> files = FindFilesOfLog(ParseLogName(argument));
    if (files.empty())
        throw Failure("there is no log called " + argument + "; \"toolkit log\" lists the logs");
    return files.front().path;
}

std::vector<LogFileEntry> FindFilesOfLog(const LogName& name)
{
    return FindFilesWhere(
        name.directory, [&name](const std::string& file) { return IsOfLog(file, name); }, false);
}

std::vector<LogFileEntry> FindFilesOfUser()
{
    return FindFilesWhere(
        c_logDirectory, [](const std::string& file) { return EndsWith(file, c_extension); }, true);
}

} // namespace Tool
