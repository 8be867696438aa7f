#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// Start and stop code of a library or a host. The `LibModuleManager` with which it is registered
/// calls it.
class TOOLKIT_API LibModule {
public:
    virtual ~LibModule();

    /// Called under the registry's lock: at each start of the registry, in order of registration,
    /// or at registration if the registry has already started.
    virtual void Initialize() = 0;

    /// Called under the registry's lock: at each stop of the registry, in reverse order of
    /// registration, or earlier, when the last registration is undone.
    virtual void Release() = 0;
};

} // namespace Toolkit
