#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Keeps wxWidgets started as long as the object lives. A thread needs it: wxWidgets must not shut
/// down while one of them lives.
///
/// In a program that runs an application object of its own, nothing is held: to start wxWidgets a
/// second time would take that object away. Such a program ends its threads before its application
/// object. A forked child leaves wxWidgets as its parent started it.
class TOOLKIT_API FrameworkHold {
public:
    /// Throws std::bad_alloc when wxWidgets cannot be started.
    FrameworkHold();
    ~FrameworkHold();

    FrameworkHold(const FrameworkHold&) = delete;
    FrameworkHold& operator=(const FrameworkHold&) = delete;

protected:
    /// Leaves wxWidgets started when the object is destroyed.
    void HoldForEver() { m_holder = 0; }

private:
    int m_holder; // the process that has to stop wxWidgets; 0 when none has
};

} // namespace Toolkit
