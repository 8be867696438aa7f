#pragma once

namespace Toolkit::Framework {

/// Makes the list in which wxWidgets keeps what each thread has.
///
/// wxWidgets makes it at its first use, and the process destroys its objects in the reverse order
/// of their making. A thread that ends when the list has been destroyed reads freed memory, so the
/// list is made before anything that may own a thread.
void MakeThreadData();

} // namespace Toolkit::Framework
