#include "toolkit/module/Load.h"

#include "toolkit/base/Fork.h"
#include "toolkit/base/ThreadEnd.h"
#include "toolkit/base/TokenizeCommandLine.h"
#include "toolkit/base/UnloadTask.h"
#include "toolkit/config/CmdLineParser.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/framework/ThreadData.h"
#include "toolkit/logging/FileLogger.h"
#include "toolkit/logging/ILogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/module/ToolkitModule.h"
#include "toolkit/regExp/RegExp.Exceptions.h"
#include "toolkit/system/RestartManagment.h"

#include <ios>
#include <memory>

// Defines every object whose constructor runs when the library is loaded, in order of construction.
// Unloading destroys them in reverse order.
//
// In a static library the linker chooses the order of object files. With this priority, these
// objects are constructed before those of the program, whose constructors may therefore use them.
#ifdef __ELF__
#define TOOLKIT_CONSTRUCTED_FIRST __attribute__((init_priority(101)))
#else
#define TOOLKIT_CONSTRUCTED_FIRST
#endif

namespace Toolkit {
namespace {

ToolkitModule* pToolkitModuleInstance = nullptr;

// Runs the entry points when the library is loaded and unloaded.
class LoadSequence {
public:
    LoadSequence()
    {
        Base::PrepareForks();
        Base::PrepareThreadEnd();
        Framework::CreateThreadData();
        DllToolkitLoad();
    }
    ~LoadSequence()
    {
        DllToolkitUnload();
        Base::UnloadTask::RunAll();
    }

    LoadSequence(const LoadSequence&) = delete;
    LoadSequence& operator=(const LoadSequence&) = delete;
};

// Initialise the standard streams, which the console and debugger loggers use. One object would be
// enough; the second, like the one for the regular expressions below, only keeps the order of
// construction as it is.
TOOLKIT_CONSTRUCTED_FIRST std::ios_base::Init s_consoleStreams;
TOOLKIT_CONSTRUCTED_FIRST std::ios_base::Init s_debuggerStreams;

} // namespace

LibModuleManager* LibModuleManager::s_pInstance = nullptr;

// "-6", the engine's code for out of memory, overwrites the beginning of the message, as every
// other code does.
TOOLKIT_CONSTRUCTED_FIRST const smart_ptr<RegExpException> RegExpException::s_outOfMemory =
    RegExpException::Create(L"-6gExp::Match return error: ");

TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> FileLogger::c_strTickSeparator = L"-";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> FileLogger::c_strLogExtension = L".qvlog";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> FileLogger::c_strOpenMode = L"w";

TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> ILogger::c_strLogToken1 = L" ";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> ILogger::c_strLogToken2 = L" : ";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> ILogger::c_strLogToken3 = L"\n";

TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> CmdLineParser::c_strSeparators =
    Base::c_commandLineSeparators;
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> CmdLineParser::c_strIdentifiers = L"-";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> CmdLineParser::c_strDelimiters =
    Base::c_commandLineQuote;

TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> PathManager::c_strConfigurationFolderName =
    L"config";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> PathManager::c_strRessourcesFolderName =
    L"ressources";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> PathManager::c_strAppearancesFolderName =
    L"ressources";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> PathManager::c_strPluginsFolderName = L"plugins";
TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> PathManager::c_strCacheFolderName = L"cache";

TOOLKIT_CONSTRUCTED_FIRST const TString<wchar_t> RestartManagment::c_strUniqueIdentifer =
    L"{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31}";

namespace {

// Not needed: the regular expressions do not use the standard streams. See s_consoleStreams.
TOOLKIT_CONSTRUCTED_FIRST std::ios_base::Init s_regularExpressionStreams;

TOOLKIT_CONSTRUCTED_FIRST LoadSequence s_loadSequence;

} // namespace
} // namespace Toolkit

void DllToolkitLoad()
{
    using namespace Toolkit;
    if (pToolkitModuleInstance)
        return;
    auto module = std::make_unique<ToolkitModule>();
    LibModuleManager::CreateInstance();
    LibModuleManager::GetInstance()->Register(module.get());
    pToolkitModuleInstance = module.release();
}

void DllToolkitUnload()
{
    using namespace Toolkit;
    if (!pToolkitModuleInstance)
        return;
    if (LibModuleManager::GetInstance())
        LibModuleManager::GetInstance()->Unregister(pToolkitModuleInstance);
    LibModuleManager::ReleaseInstance();
    delete pToolkitModuleInstance;
    pToolkitModuleInstance = nullptr;
}
