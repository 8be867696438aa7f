// The process-wide logger. Apart from ILogger.cpp, so that ILogger does not know NullLogger, which
// is derived from it.
#include "toolkit/base/Singleton.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/logging/NullLogger.h"

namespace Toolkit {

smart_ptr<ILogger>* ILogger::s_pInstance = nullptr;

smart_ptr<ILogger> ILogger::Create()
{
    return new NullLogger();
}

void ILogger::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, Create);
}

smart_ptr<ILogger> ILogger::GetInstance()
{
    return Base::GetSingleton(s_pInstance);
}

void ILogger::ReleaseInstance()
{
    Base::ReleaseSingleton(s_pInstance);
}

ILogger& ILogger::GetLogger()
{
    ILogger* const logger = s_pInstance ? s_pInstance->Get() : nullptr;
    if (logger)
        return *logger;
    // Never destroyed: what logs while the process ends must find it.
    static ILogger* const discarding = new NullLogger();
    return *discarding;
}

void ILogger::SetLogger(smart_ptr<ILogger> logger)
{
    if (s_pInstance)
        *s_pInstance = logger.IsValid() ? logger : Create();
}

} // namespace Toolkit
