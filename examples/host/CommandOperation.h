#pragma once

#include <atomic>
#include <cstddef>
#include <toolkit/threading/BackgroundOperation.h>

#include "CommandLine.h"
#include "PlugIn.h"
#include "ResultFile.h"

/// One run of a plug-in's command: parses the command line, runs the command and stores the result.
class CommandOperation : public Toolkit::BackgroundOperation, private HostPlugIn::CommandRun {
public:
    /// The command stops early when `isCancelled` becomes true. `command` is null if no plug-in has
    /// the command that `line` names.
    CommandOperation(unsigned int id, const Text& line, const HostPlugIn::Command* command,
                     const std::atomic<bool>& isCancelled);

    /// Runs the command on the calling thread. Notifies the listeners of the start and the end.
    void Perform();

    /// Discards the unfinished result, so that the command fails. Any thread may call it.
    void Abandon() { m_result.Discard(); }

    const Text& GetLine() const { return m_line; }
    /// The number and name of the command, such as "1 list", for messages.
    Text GetTitle() const;
    /// The outcome in words; empty until the command has ended.
    const Text& GetOutcome() const { return m_outcome; }
    /// Meaningful once the command has ended.
    bool HasSucceeded() const { return m_failure.empty(); }

private:
    bool RunCommand();
    bool StoreResult();
    bool FailToWrite() noexcept;

    bool IsDefined(const wchar_t* option) const noexcept override;
    const Text& GetValue(const wchar_t* option) const noexcept override;
    bool Write(const char* bytes, std::size_t count) noexcept override;
    bool ReportProgress(unsigned long long done, unsigned long long total,
                        const wchar_t* unit) noexcept override;
    void Warn(const Text& message) noexcept override;
    bool Fail(const Text& message) noexcept override;

    const Text m_line;
    const HostPlugIn::Command* const m_command;
    const std::atomic<bool>& m_isCancelled;
    const CommandLine m_options;
    ResultFile m_result;
    unsigned int m_lastShownTicks;
    Text m_outcome;
    Text m_failure; // empty unless the command has failed
};
