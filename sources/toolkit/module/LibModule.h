#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// The start and stop code of a library or a host. Register it with the `LibModuleManager`, which
/// calls it.
class TOOLKIT_API LibModule {
public:
    virtual ~LibModule();

    /// Called under the registry's lock: by each LibModuleManager::Initialize(), in order of
    /// registration, and by Register() if the registry is already initialised.
    virtual void Initialize() = 0;

    /// Called under the registry's lock: by each LibModuleManager::Release(), in reverse order of
    /// registration, and by Unregister() if it undoes the last registration while the registry is
    /// initialised and not in Release().
    virtual void Release() = 0;
};

} // namespace Toolkit
