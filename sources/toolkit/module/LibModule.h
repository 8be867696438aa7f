#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// What a library or a host built on this toolkit adds to its start and stop. Registered with the
/// `LibModuleManager`, which calls it.
class TOOLKIT_API LibModule {
public:
    virtual ~LibModule();

    /// Called at each start of the registry, after all modules that were registered earlier, or at
    /// registration when the registry has started already; under the registry's lock.
    virtual void Initialize() = 0;

    /// Called at each stop of the registry, after all modules that were registered later, or when
    /// the last registration is taken back before; under the registry's lock.
    virtual void Release() = 0;
};

} // namespace Toolkit
