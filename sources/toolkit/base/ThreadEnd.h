#pragma once

namespace Toolkit::Base {

/// Loads the code that a thread needs when it ends.
///
/// The C library ends a thread by unwinding its stack, with code that it loads at the first such
/// end. Loading takes the loader's lock. A thread that unloads a library holds that lock: if it
/// waits for another thread to end, both would wait forever.
void PrepareThreadEnd();

} // namespace Toolkit::Base
