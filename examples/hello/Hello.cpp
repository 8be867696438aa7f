#include <toolkit/Toolkit.h>

using namespace Toolkit;

int main()
{
    LibModuleManager::GetInstance()->Initialize(true);
    const TString<wchar_t> name = PathManager::GetInstance()->GetApplicationName();
    ILogger::SetLogger(new FileLogger(SeverityInfo, name, 1'000'000));
    TOOLKIT_LOG(SeverityInfo) << L"Hello from " << name << ILogger::c_strLogToken3;
    LibModuleManager::GetInstance()->Release(true);
}
