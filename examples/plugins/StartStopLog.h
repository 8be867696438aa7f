#pragma once

#include <toolkit/logging/Log.h>
#include <toolkit/module/LibModule.h>

/// A module for a plug-in that has nothing to prepare. Logs when it starts and stops.
class StartStopLog : public Toolkit::LibModule {
public:
    explicit StartStopLog(const wchar_t* plugIn) : m_plugIn(plugIn) {}

    void Initialize() override
    {
        TOOLKIT_LOG(Toolkit::SeverityInfo)
            << L"The plug-in " << m_plugIn << L" starts" << Toolkit::ILogger::c_strLogToken3;
    }

    void Release() override
    {
        TOOLKIT_LOG(Toolkit::SeverityInfo)
            << L"The plug-in " << m_plugIn << L" stops" << Toolkit::ILogger::c_strLogToken3;
    }

private:
    const wchar_t* const m_plugIn;
};
