// The constructor and the destructor of a static object use the constants and the registry, which
// the library constructs at load. The program exits with 1 if any of them is missing.

#include "toolkit/config/CmdLineParser.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/RestartManagment.h"

#include <cstdio>
#include <cstdlib>

using namespace Toolkit;

namespace {

TString<wchar_t> AllConstants()
{
    return FileLogger::c_strTickSeparator + FileLogger::c_strLogExtension +
           FileLogger::c_strOpenMode + ILogger::c_strLogToken1 + ILogger::c_strLogToken2 +
           ILogger::c_strLogToken3 + CmdLineParser::c_strSeparators +
           CmdLineParser::c_strIdentifiers + CmdLineParser::c_strDelimiters +
           PathManager::c_strConfigurationFolderName + PathManager::c_strRessourcesFolderName +
           PathManager::c_strAppearancesFolderName + PathManager::c_strPluginsFolderName +
           PathManager::c_strCacheFolderName + RestartManagment::c_strUniqueIdentifer;
}

void CheckConstants(const char* event)
{
    const bool isComplete = AllConstants() ==
                                L"-.qvlogw  : \n \t-\"configressourcesressourcespluginscache"
                                L"{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31}" &&
                            LibModuleManager::GetInstance();
    if (!isComplete)
        std::_Exit(1);
    std::puts(event);
    std::fflush(stdout);
}

class Early {
public:
    Early() { CheckConstants("constructed"); }
    ~Early() { CheckConstants("destroyed"); }
};

const Early s_early;

} // namespace

int main()
{
    return 0;
}
