#pragma once

namespace Toolkit::Framework {

/// Creates the list in which wxWidgets keeps the data of each thread.
///
/// wxWidgets creates the list at its first use, and the process destroys static objects in reverse
/// order of creation. A thread that ends after the list is destroyed reads freed memory, so create
/// the list before anything that may own a thread.
void CreateThreadData();

} // namespace Toolkit::Framework
