#include "LogHistory.h"

#include <string_view>
#include <sys/stat.h>

#include "Failure.h"
#include "LogSeams.h"

namespace Tool {
namespace {

struct stat ReadStatus(int file)
{
    struct stat status {};
    if (::fstat(file, &status) != 0)
        throw MakeSystemFailure("cannot read the log");
    return status;
}

LogSeams FindSeams(int file, off_t length)
{
    LogSeams seams;
    LogReader reader(file, 0, length);
    LogRecord record;
    while (reader.Read(record))
        seams.Add(record);
    return seams;
}

// The newest part is the last in time and the first in the file.
LogPosition MakePosition(int file, const LogSeams& seams, const struct stat& status,
                         const std::string& head)
{
    const off_t end = seams.ListParts(status.st_size).back().end;
    return {end,
            status.st_size,
            head,
            ReadTail(file, end),
            ReadRest(file, end, status),
            seams.GetNewestTick()};
}

} // namespace

// NUL bytes alone do not make a file binary: messages may contain them, and a system crash may
// leave them where data was not written in time.
bool LooksLikeLog(int file)
{
    LogReader reader(file, 0, ReadStatus(file).st_size);
    LogRecord record;
    bool hasNul = false;
    while (reader.Read(record)) {
        if (record.header)
            return true;
        hasNul = hasNul || record.text.find('\0') != std::string_view::npos;
    }
    return !hasNul;
}

LogPosition PrintHistory(int file, LogPrinter& printer)
{
    const struct stat status = ReadStatus(file);
    const std::string head = ReadHead(file);
    const LogSeams seams = FindSeams(file, status.st_size);
    if (seams.GetNewestTick())
        printer.SetClock(LogClock(*seams.GetNewestTick(), status));
    for (const LogPart& part : seams.ListParts(status.st_size)) {
        LogReader reader(file, part.begin, part.end);
        LogRecord record;
        while (reader.Read(record))
            printer.Print(record);
    }
    return MakePosition(file, seams, status, head);
}

LogPosition FindPosition(int file)
{
    const struct stat status = ReadStatus(file);
    const std::string head = ReadHead(file);
    return MakePosition(file, FindSeams(file, status.st_size), status, head);
}

} // namespace Tool
