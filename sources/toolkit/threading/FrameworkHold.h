#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Keeps the framework running as long as the object lives: what a thread needs, since the
/// framework must not shut down before the last of them has gone.
///
/// In a program that runs an application object of its own nothing is held: starting the framework
/// a second time would take that object away. Such a program ends its threads before its
/// application object.
class TOOLKIT_API FrameworkHold {
public:
    FrameworkHold();
    ~FrameworkHold();

    FrameworkHold(const FrameworkHold&) = delete;
    FrameworkHold& operator=(const FrameworkHold&) = delete;

private:
    bool m_isHeld;
};

} // namespace Toolkit
