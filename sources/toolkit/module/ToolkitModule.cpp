#include "toolkit/module/ToolkitModule.h"

#include "toolkit/files/PathManager.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/system/RestartManagment.h"
#include "toolkit/system/SingleApplicationInstance.h"
#include "toolkit/system/SystemInfo.h"
#include "toolkit/system/Version.h"

namespace Toolkit {

ToolkitModule::ToolkitModule() = default;

ToolkitModule::~ToolkitModule() = default;

void ToolkitModule::Initialize()
{
    ILogger::CreateInstance();
    SystemInfo::CreateInstance();
    Version::CreateInstance();
    PathManager::CreateInstance();
    RestartManagment::CreateInstance();
    SingleApplicationInstance::CreateInstance();
}

void ToolkitModule::Release()
{
    SingleApplicationInstance::ReleaseInstance();
    PathManager::ReleaseInstance();
    Version::ReleaseInstance();
    SystemInfo::ReleaseInstance();
    RestartManagment::ReleaseInstance();
    ILogger::ReleaseInstance();
}

} // namespace Toolkit
