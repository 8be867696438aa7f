#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/module/LibModule.h"

namespace Toolkit {

/// The library's own module, which creates and releases its process-wide objects.
class TOOLKIT_API ToolkitModule : public LibModule {
public:
    ToolkitModule();
    ~ToolkitModule() override;

    /// Creates, unless they exist, the logger, `SystemInfo`, `Version`, `PathManager`,
    /// `RestartManagment` and `SingleApplicationInstance`, in this order. The GetInstance() of an
    /// object that does not fit into memory returns an empty pointer.
    void Initialize() override;

    /// Releases `SingleApplicationInstance`, `PathManager`, `Version`, `SystemInfo`,
    /// `RestartManagment` and the logger, in this order.
    void Release() override;
};

} // namespace Toolkit
