#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Keeps wxWidgets started while the object exists. Each `Thread` has one: wxWidgets must not shut
/// down while a thread exists.
///
/// Does nothing in a program that runs its own application object: a second start of wxWidgets
/// would initialise that object again, and the second stop would delete it. Such a program must end
/// its threads before it destroys its application object. In a forked child, a copy of the parent's
/// object does not shut wxWidgets down.
class TOOLKIT_API FrameworkHold {
public:
    /// Throws `std::bad_alloc` if wxWidgets cannot be started.
    FrameworkHold();
    ~FrameworkHold();

    FrameworkHold(const FrameworkHold&) = delete;
    FrameworkHold& operator=(const FrameworkHold&) = delete;

protected:
    /// Makes the destructor leave wxWidgets started.
    void HoldForEver() { m_holder = 0; }

private:
    int m_holder; // identifier of the process that must stop wxWidgets; 0 if none must
};

} // namespace Toolkit
