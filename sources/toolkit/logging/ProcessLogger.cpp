// The process-wide logger. Apart from ILogger.cpp, so that ILogger does not know NullLogger, which
// is derived from it.
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/logging/NullLogger.h"

#include <new>

namespace Toolkit {

smart_ptr<ILogger>* ILogger::s_pInstance = nullptr;

smart_ptr<ILogger> ILogger::Create()
{
    return Base::ResultOr(smart_ptr<ILogger>::Empty(),
                          [] { return smart_ptr<ILogger>(new NullLogger()); });
}

void ILogger::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new NullLogger(); });
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
    // Never destroyed: what logs while the process ends must find it. Not on the heap, which may
    // have no room.
    alignas(NullLogger) static unsigned char storage[sizeof(NullLogger)];
    static ILogger* const discarding = new (storage) NullLogger();
    return *discarding;
}

void ILogger::SetLogger(smart_ptr<ILogger> logger)
{
    if (!logger.IsValid())
        logger = Create();
    if (s_pInstance && logger.IsValid())
        *s_pInstance = logger;
}

} // namespace Toolkit
