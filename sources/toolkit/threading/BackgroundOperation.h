#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/threading/EventNotifier.h"
#include "toolkit/threading/EventObject.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/ThreadSafety.h"

namespace Toolkit {

/// Notified when a background operation starts and ends, on the thread that reports it.
class TOOLKIT_API BackgroundOperationHandler {
public:
    virtual ~BackgroundOperationHandler();

    virtual void OnOperationStarted() = 0;
    virtual void OnOperationEnded() = 0;
};

/// A long-running operation. Calls its handlers when it starts and ends, lets other threads wait
/// for the end, and stores the time of the last update.
///
/// The worker calls SendOperationStarted(), UpdateLastOperationDate() as it makes progress, and
/// SendOperationEnded(). Any thread may call the operations.
class TOOLKIT_API BackgroundOperation : public EventNotifier<BackgroundOperationHandler> {
public:
    /// The caller chooses `operationId`, which this class does not interpret. Throws
    /// `std::bad_alloc` when out of memory.
    explicit BackgroundOperation(unsigned int operationId);
    ~BackgroundOperation() override;

    unsigned int GetOperationId() const { return m_operationId; }

    /// Makes Wait() block again, then calls the handlers.
    void SendOperationStarted();

    /// Lets waiting threads continue, then calls the handlers. Wait() may return before they run.
    void SendOperationEnded();

    /// Waits without limit until the operation has ended, even if it has not started yet, and
    /// returns true. The wait polls: it may miss an end that is followed by a new start within
    /// 200 ms.
    bool Wait() const;

    /// Stores the current tick count as the time of the last update.
    void UpdateLastOperationDate();

    /// Returns the time of the last update, as a `GetTickCount()` value; 0 before the first.
    unsigned int GetLastOperationDate() const;

private:
    unsigned int m_operationId;
    unsigned int m_lastOperationDate TOOLKIT_GUARDED_BY(m_dateLock);
    smart_ptr<EventObject> m_spareEvent; // unused, keeps the layout
    smart_ptr<EventObject> m_endedEvent;
    mutable Mutex m_dateLock;
};

} // namespace Toolkit
