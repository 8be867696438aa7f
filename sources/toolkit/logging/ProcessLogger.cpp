// The process-wide logger. In its own source file, so that ILogger.cpp does not depend on
// NullLogger, which derives from ILogger.
#include "toolkit/base/CheckedMutex.h"
#include "toolkit/base/Fork.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/logging/NullLogger.h"

#include <memory>
#include <new>

namespace Toolkit {
namespace {

// GetInstance(), ReleaseInstance() and SetLogger() hold ForkLocks::s_processLogger. A logger is
// destroyed only after s_pInstance has changed and the lock is released: the destructor may wait
// until no more text arrives, so other threads must no longer find the logger.

// GetLogger() reads the pointer once, because ReleaseInstance() may clear it on another thread.
// Pairs with the release store there: a thread that reads null sees everything done before that
// store. A builtin, because libc++ has no std::atomic_ref.
smart_ptr<ILogger>* LoadCurrent()
{
    return __atomic_load_n(&ILogger::s_pInstance, __ATOMIC_ACQUIRE);
}

} // namespace

smart_ptr<ILogger>* ILogger::s_pInstance = nullptr;

smart_ptr<ILogger> ILogger::Create()
{
    return Base::TryOr(smart_ptr<ILogger>::Empty(),
                       [] { return smart_ptr<ILogger>(new NullLogger()); });
}

void ILogger::CreateInstance()
{
    Base::CreateSingleton(s_pInstance, [] { return new NullLogger(); });
}

smart_ptr<ILogger> ILogger::GetInstance()
{
    const Base::CheckedLock guard(Base::ForkLocks::s_processLogger);
    return Base::GetSingleton(s_pInstance);
}

void ILogger::ReleaseInstance()
{
    std::unique_ptr<smart_ptr<ILogger>> last;
    const Base::CheckedLock guard(Base::ForkLocks::s_processLogger);
    last.reset(s_pInstance);
    __atomic_store_n(&s_pInstance, nullptr, __ATOMIC_RELEASE);
}

ILogger& ILogger::GetLogger()
{
    const smart_ptr<ILogger>* const current = LoadCurrent();
    ILogger* const logger = current ? current->Get() : nullptr;
    if (logger)
        return *logger;
    // Never destroyed, because code may log until the process ends. Not on the heap, because memory
    // may have run out.
    alignas(NullLogger) static unsigned char storage[sizeof(NullLogger)];
    static ILogger* const discarding = new (storage) NullLogger();
    return *discarding;
}

void ILogger::SetLogger(smart_ptr<ILogger> logger)
{
    if (!logger.IsValid())
        logger = Create();
    smart_ptr<ILogger> last = smart_ptr<ILogger>::Empty();
    const Base::CheckedLock guard(Base::ForkLocks::s_processLogger);
    if (!s_pInstance || !logger.IsValid())
        return;
    last = *s_pInstance;
    *s_pInstance = logger;
}

} // namespace Toolkit
