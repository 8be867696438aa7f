#pragma once

#include "toolkit/core/Export.h"

namespace Toolkit {

/// The start and stop code of a library or a host, called by the `LibModuleManager` with which it
/// is registered.
class TOOLKIT_API LibModule {
public:
    virtual ~LibModule();

    /// Called under the registry's lock: by each LibModuleManager::Initialize(), in order of
    /// registration, or at registration if the registry is already initialised.
    virtual void Initialize() = 0;

    /// Called under the registry's lock: by each LibModuleManager::Release(), in reverse order of
    /// registration, or earlier, when the last registration is undone.
    virtual void Release() = 0;
};

} // namespace Toolkit
