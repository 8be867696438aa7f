#pragma once

namespace Toolkit::Base {

/// Loads the code that a thread needs when it ends.
///
/// pthread_exit(3), which ends the threads of wxWidgets, unwinds the stack with code that the C
/// library loads at the first call. Loading acquires the loader's lock. A thread that unloads a
/// library holds that lock: if it waited for another thread that needs the code, both would wait
/// forever.
void PrepareThreadEnd();

} // namespace Toolkit::Base
