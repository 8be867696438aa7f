#pragma once

#include <fcntl.h>
#include <functional>
#include <string>
#include <vector>

#include "InputFile.h"
#include "Require.h"
#include "tools/Descriptor.h"
#include "tools/LogSeams.h"

/// A log file that is read as `toolkit log` reads it.
class InputLog {
public:
    explicit InputLog(const std::string& bytes)
        : m_file(WriteAndOpen(bytes)), m_length(static_cast<off_t>(bytes.size()))
    {
    }

    /// Calls `onRecord` with each record of `part`. A record is valid only during the call.
    void ForEachRecord(const Tool::LogPart& part,
                       const std::function<void(const Tool::LogRecord&)>& onRecord) const
    {
        Tool::LogReader reader(m_file.Get(), part.begin, part.end);
        Tool::LogRecord record;
        while (reader.Read(record))
            onRecord(record);
    }

    /// Returns the parts of the file, oldest first.
    std::vector<Tool::LogPart> ListParts() const
    {
        Tool::LogSeams seams;
        ForEachRecord({0, m_length}, [&](const Tool::LogRecord& record) { seams.Add(record); });
        return seams.ListParts(m_length);
    }

private:
    static Tool::Descriptor WriteAndOpen(const std::string& bytes)
    {
        static const InputFile file;
        file.Write(bytes);
        Tool::Descriptor descriptor(::open(file.NativePath().c_str(), O_RDONLY | O_CLOEXEC));
        Require(descriptor.IsOpen());
        return descriptor;
    }

    const Tool::Descriptor m_file;
    const off_t m_length;
};
