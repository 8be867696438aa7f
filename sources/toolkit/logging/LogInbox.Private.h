#pragma once

#include "toolkit/logging/LogPieceQueue.Private.h"

#include <mutex>
#include <string_view>

namespace Toolkit {

/// The queue between the threads that log and the writer thread. Any thread may call the
/// operations.
///
/// `LogLine`: with a `Mutex`, which is recursive, a line takes a quarter longer.
class LogInbox {
public:
    /// True when the inbox was empty before. Throws `std::bad_alloc` and changes nothing when out
    /// of memory.
    bool Put(std::wstring_view piece)
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const bool wasEmpty = m_pieces.IsEmpty();
        m_pieces.Push(piece);
        return wasEmpty;
    }

    /// Moves all pieces to `batch`, which must be empty.
    void Take(LogPieceQueue& batch)
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        batch.Swap(m_pieces);
    }

private:
    std::mutex m_lock;
    LogPieceQueue m_pieces; // guarded by m_lock
};

} // namespace Toolkit
