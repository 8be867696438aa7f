#include "toolkit/base/UnloadTask.h"

#include "toolkit/base/Fork.h"

namespace Toolkit::Base {
namespace {

UnloadTask* s_first BASE_GUARDED_BY(ForkLocks::s_unloadTasks) = nullptr;

} // namespace

UnloadTask::UnloadTask(Function function, void* object)
    : m_function(function), m_object(object), m_previous(nullptr), m_next(nullptr)
{
    const CheckedLock guard(ForkLocks::s_unloadTasks);
    m_next = s_first;
    if (s_first)
        s_first->m_previous = this;
    s_first = this;
}

UnloadTask::~UnloadTask()
{
    const CheckedLock guard(ForkLocks::s_unloadTasks);
    if (m_previous)
        m_previous->m_next = m_next;
    else
        s_first = m_next;
    if (m_next)
        m_next->m_previous = m_previous;
}

void UnloadTask::RunAll()
{
    const CheckedLock guard(ForkLocks::s_unloadTasks);
    for (const UnloadTask* task = s_first; task; task = task->m_next)
        task->m_function(task->m_object);
}

} // namespace Toolkit::Base
