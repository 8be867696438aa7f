#include "toolkit/threading/BackgroundOperation.h"
#include "toolkit/threading/EventNotifier.h"
#include "toolkit/threading/EventObject.h"
#include "toolkit/threading/FrameworkHold.h"
#include "toolkit/threading/Mutex.h"
#include "toolkit/threading/Thread.h"

#include <memory>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

class Worker : public Thread {
public:
    ~Worker() override { Wait(); }

protected:
    int DoWork() override { return 7; }
};

// Runs until it is asked to end.
class Waiting : public Thread {
public:
    ~Waiting() override
    {
        Resume();
        Delete();
        Wait();
    }

protected:
    int DoWork() override
    {
        while (!TestDestroy())
            Sleep(1);
        return 7;
    }
};

// Keeps wxWidgets started during the sweep, because its own allocations at start are not tested.
const FrameworkHold& Hold()
{
    static const FrameworkHold hold;
    return hold;
}

void MutexMade(Attempt& attempt)
{
    bool isLocked = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            Mutex mutex(true);
            isLocked = mutex.Lock(0) && mutex.Unlock() && mutex.Unlock();
        }))
        attempt.Expect(isLocked);
}

void MutexUsed(Attempt& attempt)
{
    auto mutex = std::make_unique<Mutex>(false);
    bool isRight = false;
    attempt.Run([&] {
        {
            const MutexLocker locker(*mutex, MutexInternal::Infinite);
        }
        isRight = mutex->Lock(10) && mutex->Unlock() && !mutex->Unlock();
        mutex.reset();
    });
    attempt.Always(!attempt.HasFailed() && isRight);
}

void EventMade(Attempt& attempt)
{
    bool isSignalled = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            EventObject event(true, true);
            isSignalled = event.Wait(0);
        }))
        attempt.Expect(isSignalled);
}

void EventUsed(Attempt& attempt)
{
    auto event = std::make_unique<EventObject>(false, false);
    bool isRight = false;
    attempt.Run([&] {
        event->Signal();
        isRight = event->Wait(0);
        event->Reset();
        isRight = isRight && !event->Wait(0);
        event.reset();
    });
    attempt.Always(!attempt.HasFailed() && isRight);
}

class Handler : public BackgroundOperationHandler {
public:
    void OnOperationStarted() override { ++m_calls; }
    void OnOperationEnded() override { ++m_calls; }
    int Calls() const { return m_calls; }

private:
    int m_calls = 0;
};

void OperationMade(Attempt& attempt)
{
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] { isMade = BackgroundOperation(7).GetOperationId() == 7; }))
        attempt.Expect(isMade);
}

void OperationUsed(Attempt& attempt)
{
    auto operation = std::make_unique<BackgroundOperation>(7);
    auto* const handler = new Handler();
    const smart_ptr<BackgroundOperationHandler> listener(handler);
    operation->AddListener(listener);
    bool isRight = false;
    attempt.Run([&] {
        operation->SendOperationStarted();
        operation->UpdateLastOperationDate();
        operation->SendOperationEnded();
        isRight = operation->Wait() && operation->GetLastOperationDate() > 0;
        operation.reset();
    });
    attempt.Always(!attempt.HasFailed() && isRight && handler->Calls() == 2);
}

void ListenerAdded(Attempt& attempt)
{
    BackgroundOperation operation(7);
    const smart_ptr<BackgroundOperationHandler> listener(new Handler());
    const bool isAdded = attempt.Run(Rule::BadAlloc, [&] { operation.AddListener(listener); });
    attempt.Always(operation.RemoveListener(listener) == isAdded);
}

// Removes itself from the operation inside its own callback.
class Leaver : public BackgroundOperationHandler {
public:
    explicit Leaver(BackgroundOperation& operation) : m_operation(operation) {}
    void OnOperationStarted() override { isRemoved = m_operation.RemoveListener(self); }
    void OnOperationEnded() override { hasEnded = true; }

    smart_ptr<BackgroundOperationHandler> self;
    bool isRemoved = false;
    bool hasEnded = false;

private:
    BackgroundOperation& m_operation;
};

void ListenerRemoved(Attempt& attempt)
{
    BackgroundOperation operation(7);
    auto* const leaver = new Leaver(operation);
    const smart_ptr<BackgroundOperationHandler> listener(leaver);
    leaver->self = listener;
    operation.AddListener(listener);
    attempt.Run([&] { operation.SendOperationStarted(); });
    operation.SendOperationEnded();
    attempt.Expect(leaver->isRemoved && !leaver->hasEnded, !leaver->isRemoved && leaver->hasEnded);
    leaver->self = smart_ptr<BackgroundOperationHandler>::Empty();
}

void ThreadMade(Attempt& attempt)
{
    Hold();
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            Worker worker;
            isMade = !worker.IsRunning() && !worker.IsPaused();
        }))
        attempt.Expect(isMade);
}

void ThreadRun(Attempt& attempt)
{
    Hold();
    Worker worker;
    bool isRun = false;
    attempt.Run([&] { isRun = worker.Run(); });
    attempt.Expect(isRun, !isRun);
    attempt.Always(isRun || worker.Run());
    worker.Wait();
}

void ThreadDropped(Attempt& attempt)
{
    Hold();
    auto worker = std::make_unique<Worker>();
    attempt.Run([&] { worker.reset(); });
    attempt.Always(!worker);
}

void ThreadUsed(Attempt& attempt)
{
    Hold();
    auto thread = std::make_unique<Waiting>();
    thread->Run();
    bool isRight = false;
    attempt.Run([&] {
        isRight = thread->IsRunning() && thread->GetId() != 0 && Thread::GetCurrentId() != 0 &&
                  thread->Pause() && thread->Resume();
        static_cast<void>(thread->IsPaused());
        static_cast<void>(Thread::IsMainThread());
        Thread::Sleep(0);
        thread.reset();
    });
    attempt.Always(!thread);
    attempt.Expect(isRight, true);
}

void ThreadKilled(Attempt& attempt)
{
    Hold();
    Worker worker;
    wxThreadError result = wxTHREAD_NO_ERROR;
    attempt.Run([&] { result = worker.Kill(); });
    attempt.Always(!attempt.HasFailed() && result == wxTHREAD_NOT_RUNNING);
}

void Held(Attempt& attempt)
{
    Hold();
    bool isMade = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const FrameworkHold hold;
            isMade = true;
        }))
        attempt.Expect(isMade);
}

} // namespace

std::vector<Operation> ThreadOperations()
{
    return {
        {"Toolkit::Mutex::Mutex", MutexMade},
        {"Toolkit::Mutex::~Mutex", MutexUsed},
        {"Toolkit::MutexInternal::MutexInternal", MutexMade},
        {"Toolkit::MutexInternal::~MutexInternal", MutexUsed},
        {"Toolkit::MutexInternal::Lock", MutexUsed},
        {"Toolkit::MutexInternal::Unlock", MutexUsed},
        {"Toolkit::EventObject::EventObject", EventMade},
        {"Toolkit::EventObject::~EventObject", EventUsed},
        {"Toolkit::EventObject::Signal", EventUsed},
        {"Toolkit::EventObject::Reset", EventUsed},
        {"Toolkit::EventObject::Wait", EventUsed},
        {"Toolkit::BackgroundOperation::BackgroundOperation", OperationMade},
        {"Toolkit::BackgroundOperation::~BackgroundOperation", OperationUsed},
        {"Toolkit::BackgroundOperation::SendOperationStarted", OperationUsed},
        {"Toolkit::BackgroundOperation::SendOperationEnded", OperationUsed},
        {"Toolkit::BackgroundOperation::UpdateLastOperationDate", OperationUsed},
        {"Toolkit::BackgroundOperation::GetLastOperationDate", OperationUsed},
        {"Toolkit::BackgroundOperation::Wait", OperationUsed},
        {"Toolkit::BackgroundOperationHandler::~BackgroundOperationHandler", OperationUsed},
        {"Toolkit::EventNotifier::AddListener", ListenerAdded},
        {"Toolkit::EventNotifier::RemoveListener", ListenerRemoved},
        {"Toolkit::Thread::Thread", ThreadMade},
        {"Toolkit::Thread::~Thread", ThreadDropped},
        {"Toolkit::Thread::Run", ThreadRun},
        {"Toolkit::Thread::Kill", ThreadKilled},
        {"Toolkit::Thread::Entry", ThreadRun},
        {"Toolkit::Thread::Pause", ThreadUsed},
        {"Toolkit::Thread::Resume", ThreadUsed},
        {"Toolkit::Thread::Wait", ThreadUsed},
        {"Toolkit::Thread::Sleep", ThreadUsed},
        {"Toolkit::Thread::GetId", ThreadUsed},
        {"Toolkit::Thread::GetCurrentId", ThreadUsed},
        {"Toolkit::Thread::IsMainThread", ThreadUsed},
        {"Toolkit::Thread::IsPaused", ThreadUsed},
        {"Toolkit::Thread::IsRunning", ThreadUsed},
        {"Toolkit::Thread::TestDestroy", ThreadUsed},
        {"Toolkit::Thread::OnDelete", ThreadUsed},
        {"Toolkit::Thread::OnKill", ThreadUsed},
        {"Toolkit::FrameworkHold::FrameworkHold", Held},
        {"Toolkit::FrameworkHold::~FrameworkHold", Held},
    };
}

} // namespace Toolkit::TestSupport
