#include "CommandOperation.h"

#include <toolkit/encoding/StringConvert.h>
#include <toolkit/logging/Log.h>
#include <toolkit/system/TickCount.h>

#include "VisibleText.h"

using namespace Toolkit;

namespace {

// Minimum time between two displays of progress. 100 % is always shown.
constexpr unsigned int c_progressIntervalMs = 200;

// Used instead of an unknown command. It has no options of its own.
constexpr HostPlugIn::Command c_noCommand{};

Text ToText(unsigned long long value)
{
    return StringConvert::UStringFromUInt64(value);
}

} // namespace

CommandOperation::CommandOperation(unsigned int id, const Text& line,
                                   const HostPlugIn::Command* command,
                                   const std::atomic<bool>& isCancelled)
    : BackgroundOperation(id), m_line(line), m_command(command), m_isCancelled(isCancelled),
      m_options(command ? *command : c_noCommand, line), m_result(m_options.GetValue(L"out")),
      m_lastShownTicks(GetTickCount())
{
}

void CommandOperation::Perform()
{
    const unsigned int beginTicks = GetTickCount();
    SendOperationStarted();
    if (!RunCommand() || !StoreResult()) {
        Fail(L"no reason given"); // counts only if the command has set no message
        m_result.Discard();
    }
    m_outcome = HasSucceeded()
                    ? L"done in " + ToText(GetTickCount() - beginTicks) + L" ms, " +
                          ToText(m_result.GetSize()) + L" bytes in " + m_options.GetValue(L"out")
                    : L"failed: " + m_failure;
    SendOperationEnded();
}

Text CommandOperation::GetTitle() const
{
    return ToText(GetOperationId()) + L" " + GetCommandWord(m_line);
}

bool CommandOperation::RunCommand()
{
    if (m_isCancelled)
        return Fail(L"cancelled");
    if (!m_command)
        return Fail(L"unknown command");
    if (!m_options.GetError().empty())
        return Fail(m_options.GetError());
    if (!m_result.Open())
        return FailToWrite();
    return m_command->run(*this);
}

// A command may have called Fail() and still return true.
bool CommandOperation::StoreResult()
{
    if (!HasSucceeded())
        return false;
    return m_result.Commit() || FailToWrite();
}

bool CommandOperation::FailToWrite() noexcept
{
    return Fail(L"cannot write " + m_options.GetValue(L"out") + L": " + m_result.GetError());
}

bool CommandOperation::IsDefined(const wchar_t* option) const noexcept
{
    return m_options.IsDefined(option);
}

const Text& CommandOperation::GetValue(const wchar_t* option) const noexcept
{
    return m_options.GetValue(option);
}

bool CommandOperation::Write(const char* bytes, std::size_t count) noexcept
{
    return m_result.Write(bytes, count) || FailToWrite();
}

bool CommandOperation::ReportProgress(unsigned long long done, unsigned long long total,
                                      const wchar_t* unit) noexcept
{
    UpdateLastOperationDate();
    if (m_isCancelled)
        return Fail(L"cancelled");
    const unsigned int ticks = GetLastOperationDate();
    if (ticks - m_lastShownTicks >= c_progressIntervalMs || done == total) {
        m_lastShownTicks = ticks;
        ShowProgress(GetTitle(), done, total, unit);
    }
    return true;
}

void CommandOperation::Warn(const Text& message) noexcept
{
    const Text visible = MakeVisible(GetTitle() + L": " + message);
    TOOLKIT_LOG(SeverityWarning) << visible << ILogger::c_strLogToken3;
    Complain(visible);
}

bool CommandOperation::Fail(const Text& message) noexcept
{
    if (m_failure.empty())
        m_failure = message;
    return false;
}
