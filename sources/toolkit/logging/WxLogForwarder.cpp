#include "toolkit/logging/WxLogForwarder.h"

#include "toolkit/framework/InstalledForwarder.h"
#include "toolkit/logging/ILogger.h"

namespace Toolkit {
namespace {

constexpr wxLongLong_t c_msPerSecond = 1000;

LogSeverity ToSeverity(unsigned long level)
{
    switch (level) {
    case wxLOG_FatalError:
    case wxLOG_Error:
        return SeverityError;
    case wxLOG_Warning:
        return SeverityWarning;
    case wxLOG_Message:
    case wxLOG_Status:
        return SeverityInfo;
    case wxLOG_Info:
    case wxLOG_Debug:
    case wxLOG_Trace:
        return SeverityDebug;
    default:
        return SeverityVerbose;
    }
}

} // namespace

WxLogForwarder::WxLogForwarder()
{
    wxLog::SetActiveTarget(this);
    Framework::InstallForwarder(this);
}

WxLogForwarder::~WxLogForwarder()
{
    // While this target is still active, delivers the messages that other threads have queued.
    if (Framework::RemoveForwarder(this) && wxLog::GetActiveTarget() == this)
        wxLog::FlushActive();
    wxLog::SetActiveTarget(nullptr);
}

void WxLogForwarder::DoLogRecord(wxLogLevel level, const wxString& message,
                                 const wxLogRecordInfo& info)
{
    DoLog(level, message.wc_str(), static_cast<long>(info.timestampMS / c_msPerSecond));
}

void WxLogForwarder::DoLog(unsigned long level, const wchar_t* message, long timestamp)
{
    if (!ILogger::s_pInstance)
        return;
    const LogSeverity severity = ToSeverity(level);
    ILogger::GetLogger() << SetSeverity(severity) << severity << ILogger::c_strLogToken1
                         << ILogger::c_strLogToken2 << L"wx" << ILogger::c_strLogToken2 << timestamp
                         << ILogger::c_strLogToken2 << message << ILogger::c_strLogToken3;
}

void WxLogForwarder::DoLogString(const wchar_t* /*message*/, long /*timestamp*/) {}

} // namespace Toolkit
