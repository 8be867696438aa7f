// The process-wide logger. In a source file of its own, so that ILogger does not depend on
// NullLogger, which derives from it.
#include "toolkit/base/Fork.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Singleton.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/logging/NullLogger.h"

#include <memory>
#include <new>

namespace Toolkit {
namespace {

// ForkLocks::s_processLogger is held while the pointer to the logger is copied or changed, never
// while a logger is destroyed: the destructor of a logger may wait until no more text arrives, so
// no thread may still find the logger then.

// Reads the pointer once, because other threads may log while the logger is released. Pairs with
// the release store of ReleaseInstance(): a thread that reads null sees everything done before that
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
    // Never destroyed, because code may log until the process has ended. Not on the heap, which may
    // have no room.
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
