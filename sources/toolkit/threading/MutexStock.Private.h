#pragma once

#include <memory>

namespace Toolkit {

class CountedMutex;

/// A few mutexes that nobody uses, kept for those who want one next: every shared pointer has a
/// mutex of its own, and making one costs more than all the rest of a count.
///
/// Any thread may call these.
namespace MutexStock {

/// A mutex that nobody holds: from the stock, or a new one when there is none.
std::unique_ptr<CountedMutex> Take();

/// Keeps `mutex`, which nobody may hold, or destroys it when there are enough.
void GiveBack(std::unique_ptr<CountedMutex> mutex);

/// Destroys all that are kept. The stock can be used again afterwards.
void Clear();

} // namespace MutexStock
} // namespace Toolkit
