#include "toolkit/threading/BackgroundOperation.h"

#include "toolkit/base/TickCount.h"

namespace Toolkit {

BackgroundOperationHandler::~BackgroundOperationHandler() = default;

BackgroundOperation::BackgroundOperation(unsigned int operationId)
    : m_operationId(operationId), m_lastOperationDate(0),
      m_spareEvent(new EventObject(false, false)), m_endedEvent(new EventObject(false, false)),
      m_dateLock(false)
{
}

BackgroundOperation::~BackgroundOperation() = default;

void BackgroundOperation::SendOperationStarted()
{
    m_endedEvent->Reset();
    Notify([](BackgroundOperationHandler& handler) { handler.OnOperationStarted(); });
}

void BackgroundOperation::SendOperationEnded()
{
    m_endedEvent->Signal();
    Notify([](BackgroundOperationHandler& handler) { handler.OnOperationEnded(); });
}

bool BackgroundOperation::Wait() const
{
    return m_endedEvent->Wait(MutexInternal::Infinite);
}

void BackgroundOperation::UpdateLastOperationDate()
{
    const MutexLocker locker(m_dateLock, MutexInternal::Infinite);
    m_lastOperationDate = Base::GetTickCount();
}

unsigned int BackgroundOperation::GetLastOperationDate() const
{
    const MutexLocker locker(m_dateLock, MutexInternal::Infinite);
    return m_lastOperationDate;
}

} // namespace Toolkit
