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

// Runs until Delete() asks it to end.
class WaitingThread : public Thread {
public:
    ~WaitingThread() override
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

// Keeps wxWidgets started: the sweep does not test the allocations that starting it makes.
const FrameworkHold& HoldFramework()
{
    static const FrameworkHold hold;
    return hold;
}

void ConstructsMutex(Attempt& attempt)
{
    bool isLocked = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            Mutex mutex(true);
            isLocked = mutex.Lock(0) && mutex.Unlock() && mutex.Unlock();
        }))
        attempt.Expect(isLocked);
}

void UsesMutex(Attempt& attempt)
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
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

void ConstructsEvent(Attempt& attempt)
{
    bool isSignalled = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            EventObject event(true, true);
            isSignalled = event.Wait(0);
        }))
        attempt.Expect(isSignalled);
}

void UsesEvent(Attempt& attempt)
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
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

class Handler : public BackgroundOperationHandler {
public:
    void OnOperationStarted() override { ++m_calls; }
    void OnOperationEnded() override { ++m_calls; }
    int Calls() const { return m_calls; }

private:
    int m_calls = 0;
};

void ConstructsOperation(Attempt& attempt)
{
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc,
                    [&] { isCreated = BackgroundOperation(7).GetOperationId() == 7; }))
        attempt.Expect(isCreated);
}

void UsesOperation(Attempt& attempt)
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
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight && handler->Calls() == 2);
}

void AddsListener(Attempt& attempt)
{
    BackgroundOperation operation(7);
    const smart_ptr<BackgroundOperationHandler> listener(new Handler());
    const bool isAdded = attempt.Run(Rule::BadAlloc, [&] { operation.AddListener(listener); });
    attempt.ExpectAlways(operation.RemoveListener(listener) == isAdded);
}

// Removes itself from the operation inside its own callback.
class SelfRemovingHandler : public BackgroundOperationHandler {
public:
    explicit SelfRemovingHandler(BackgroundOperation& operation) : m_operation(operation) {}
    void OnOperationStarted() override { isRemoved = m_operation.RemoveListener(self); }
    void OnOperationEnded() override { hasEnded = true; }

    smart_ptr<BackgroundOperationHandler> self;
    bool isRemoved = false;
    bool hasEnded = false;

private:
    BackgroundOperation& m_operation;
};

void RemovesListener(Attempt& attempt)
{
    BackgroundOperation operation(7);
    auto* const handler = new SelfRemovingHandler(operation);
    const smart_ptr<BackgroundOperationHandler> listener(handler);
    handler->self = listener;
    operation.AddListener(listener);
    attempt.Run([&] { operation.SendOperationStarted(); });
    operation.SendOperationEnded();
    attempt.Expect(handler->isRemoved && !handler->hasEnded,
                   !handler->isRemoved && handler->hasEnded);
    handler->self = smart_ptr<BackgroundOperationHandler>::Empty();
}

void ConstructsThread(Attempt& attempt)
{
    HoldFramework();
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            Worker worker;
            isCreated = !worker.IsRunning() && !worker.IsPaused();
        }))
        attempt.Expect(isCreated);
}

void RunsThread(Attempt& attempt)
{
    HoldFramework();
    Worker worker;
    bool isRunning = false;
    attempt.Run([&] { isRunning = worker.Run(); });
    attempt.Expect(isRunning, !isRunning);
    attempt.ExpectAlways(isRunning || worker.Run());
    worker.Wait();
}

void DestroysThread(Attempt& attempt)
{
    HoldFramework();
    auto worker = std::make_unique<Worker>();
    attempt.Run([&] { worker.reset(); });
}

void UsesThread(Attempt& attempt)
{
    HoldFramework();
    auto thread = std::make_unique<WaitingThread>();
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
    attempt.ExpectAlways(!thread);
    attempt.Expect(isRight, true);
}

void KillsThread(Attempt& attempt)
{
    HoldFramework();
    Worker worker;
    wxThreadError result = wxTHREAD_NO_ERROR;
    attempt.Run([&] { result = worker.Kill(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && result == wxTHREAD_NOT_RUNNING);
}

void HoldsFramework(Attempt& attempt)
{
    HoldFramework();
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] {
            const FrameworkHold hold;
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

} // namespace

std::vector<Operation> ThreadOperations()
{
    return {
        {"Toolkit::Mutex::Mutex", ConstructsMutex},
        {"Toolkit::Mutex::~Mutex", UsesMutex},
        {"Toolkit::MutexInternal::MutexInternal", ConstructsMutex},
        {"Toolkit::MutexInternal::~MutexInternal", UsesMutex},
        {"Toolkit::MutexInternal::Lock", UsesMutex},
        {"Toolkit::MutexInternal::Unlock", UsesMutex},
        {"Toolkit::EventObject::EventObject", ConstructsEvent},
        {"Toolkit::EventObject::~EventObject", UsesEvent},
        {"Toolkit::EventObject::Signal", UsesEvent},
        {"Toolkit::EventObject::Reset", UsesEvent},
        {"Toolkit::EventObject::Wait", UsesEvent},
        {"Toolkit::BackgroundOperation::BackgroundOperation", ConstructsOperation},
        {"Toolkit::BackgroundOperation::~BackgroundOperation", UsesOperation},
        {"Toolkit::BackgroundOperation::SendOperationStarted", UsesOperation},
        {"Toolkit::BackgroundOperation::SendOperationEnded", UsesOperation},
        {"Toolkit::BackgroundOperation::UpdateLastOperationDate", UsesOperation},
        {"Toolkit::BackgroundOperation::GetLastOperationDate", UsesOperation},
        {"Toolkit::BackgroundOperation::Wait", UsesOperation},
        {"Toolkit::BackgroundOperationHandler::~BackgroundOperationHandler", UsesOperation},
        {"Toolkit::EventNotifier::AddListener", AddsListener},
        {"Toolkit::EventNotifier::RemoveListener", RemovesListener},
        {"Toolkit::Thread::Thread", ConstructsThread},
        {"Toolkit::Thread::~Thread", DestroysThread},
        {"Toolkit::Thread::Run", RunsThread},
        {"Toolkit::Thread::Kill", KillsThread},
        {"Toolkit::Thread::Entry", RunsThread},
        {"Toolkit::Thread::Pause", UsesThread},
        {"Toolkit::Thread::Resume", UsesThread},
        {"Toolkit::Thread::Wait", UsesThread},
        {"Toolkit::Thread::Sleep", UsesThread},
        {"Toolkit::Thread::GetId", UsesThread},
        {"Toolkit::Thread::GetCurrentId", UsesThread},
        {"Toolkit::Thread::IsMainThread", UsesThread},
        {"Toolkit::Thread::IsPaused", UsesThread},
        {"Toolkit::Thread::IsRunning", UsesThread},
        {"Toolkit::Thread::TestDestroy", UsesThread},
        {"Toolkit::Thread::OnDelete", UsesThread},
        {"Toolkit::Thread::OnKill", UsesThread},
        {"Toolkit::FrameworkHold::FrameworkHold", HoldsFramework},
        {"Toolkit::FrameworkHold::~FrameworkHold", HoldsFramework},
    };
}

} // namespace Toolkit::TestSupport
