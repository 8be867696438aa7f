// Prints the order in which the process-wide objects are created and released. The library does not
// report these steps, so each call of operator new or operator delete checks which objects exist.

#include "toolkit/files/PathManager.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/RestartManagment.h"
#include "toolkit/system/SingleApplicationInstance.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/system/Version.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

using namespace Toolkit;

namespace {

constexpr char c_initials[] = "LIVPRS";
constexpr unsigned int c_objectCount = sizeof c_initials - 1;
constexpr unsigned int c_maxSteps = 64;

unsigned int s_steps[c_maxSteps];
unsigned int s_stepCount = 0;
unsigned int s_lastStep = 0;

unsigned int ExistingObjects()
{
    const bool exists[] = {ILogger::s_pInstance != nullptr,
                           SystemInfo::s_pInstance != nullptr,
                           Version::s_pInstance != nullptr,
                           PathManager::s_pInstance != nullptr,
                           RestartManagment::s_pInstance != nullptr,
                           SingleApplicationInstance::s_pInstance != nullptr};
    unsigned int bits = 0;
    for (unsigned int object = 0; object < c_objectCount; ++object)
        bits |= exists[object] ? 1u << object : 0u;
    return bits;
}

void RecordStep()
{
    const unsigned int now = ExistingObjects();
    if (now == s_lastStep || s_stepCount == c_maxSteps)
        return;
    s_lastStep = now;
    s_steps[s_stepCount++] = now;
}

void PrintStep(unsigned int step)
{
    std::putchar(' ');
    for (unsigned int object = 0; object < c_objectCount; ++object) {
        if (step & 1u << object)
            std::putchar(c_initials[object]);
    }
    if (step == 0)
        std::putchar('-');
}

void PrintSteps(const char* title)
{
    RecordStep();
    std::printf("%s:", title);
    for (unsigned int step = 0; step < s_stepCount; ++step)
        PrintStep(s_steps[step]);
    std::putchar('\n');
    s_stepCount = 0;
}

} // namespace

void* operator new(std::size_t size)
{
    RecordStep();
    if (void* const memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    RecordStep();
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    RecordStep();
    std::free(memory);
}

int main()
{
    LibModuleManager::GetInstance()->Initialize(true);
    PrintSteps("start");
    LibModuleManager::GetInstance()->Release(true);
    PrintSteps("stop");
    return 0;
}
