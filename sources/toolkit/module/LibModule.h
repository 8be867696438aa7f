#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// What a library built on this toolkit contributes to a process: something to initialise after the
/// host has started and to release before it stops.
class TOOLKIT_API LibModule {
public:
    virtual ~LibModule();

    /// Called once, under the registry's lock.
    virtual void Initialize() = 0;

    /// Called once, under the registry's lock, after all modules that were registered later.
    virtual void Release() = 0;
};

} // namespace Toolkit
