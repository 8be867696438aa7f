#pragma once

#include "toolkit/base/CheckedMutex.h"
#include "toolkit/base/Fork.h"
#include "toolkit/logging/LogPieceQueue.Private.h"
#include "toolkit/threading/ThreadSafety.h"

#include <string_view>

namespace Toolkit {

/// The queue between the threads that log and the writer thread. Any thread may call the
/// operations.
///
/// A forked child has no writer thread, and another thread of its parent may have held the lock: in
/// the child, Put() drops the text without locking.
///
/// `LogLine`: with a `Mutex`, which is recursive, a line takes a quarter longer.
class LogInbox {
public:
    /// Adds `piece`. True if the inbox was empty before. When out of memory, throws
    /// `std::bad_alloc` and changes nothing.
    bool Put(std::wstring_view piece)
    {
        if (m_forks != Base::CountForks())
            return false;
        const Base::CheckedLock guard(m_lock);
        const bool wasEmpty = m_pieces.IsEmpty();
        m_pieces.Push(piece);
        return wasEmpty;
    }

    /// Moves all pieces to `batch`, which must be empty.
    void MoveTo(LogPieceQueue& batch)
    {
        const Base::CheckedLock guard(m_lock);
        batch.Swap(m_pieces);
    }

private:
    const unsigned int m_forks = Base::CountForks();
    Base::CheckedMutex m_lock;
    LogPieceQueue m_pieces TOOLKIT_GUARDED_BY(m_lock);
};

} // namespace Toolkit
