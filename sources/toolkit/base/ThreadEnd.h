#pragma once

namespace Toolkit::Base {

/// Loads what a thread needs when it ends.
///
/// The C library ends a thread by unwinding its stack, with code that it loads at the first such
/// end. Loading needs the loader's lock, which a thread that unloads a library holds: if it waits
/// there for a thread to end, neither goes on.
void PrepareThreadEnd();

} // namespace Toolkit::Base
