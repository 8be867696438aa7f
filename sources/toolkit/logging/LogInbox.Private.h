#pragma once

#include "toolkit/logging/LogPieceQueue.Private.h"

#include <mutex>
#include <string_view>

namespace Toolkit {

/// Where the threads that log leave their pieces of text for the writer thread. Any thread may call
/// the operations.
///
/// `LogLine`: with a `Mutex`, which is recursive, a line takes a quarter longer.
class LogInbox {
public:
    /// True when the inbox was empty. Throws `std::bad_alloc` and leaves the piece out when out of
    /// memory.
    bool Put(std::wstring_view piece)
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        const bool wasEmpty = m_pieces.IsEmpty();
        m_pieces.Push(piece);
        return wasEmpty;
    }

    /// Exchanges all pieces for the empty queue `batch`.
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
