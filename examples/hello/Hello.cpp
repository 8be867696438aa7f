#include <iostream>
#include <toolkit/Toolkit.h>

using namespace Toolkit;

int main()
{
    LibModuleManager::GetInstance()->Initialize(true);
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    auto* const log = new FileLogger(SeverityInfo, paths->GetApplicationUniqueName(), 1'000'000);
    ILogger::SetLogger(log); // takes ownership of it
    TOOLKIT_LOG(SeverityInfo) << L"Hello from " << paths->GetApplicationName()
                              << ILogger::c_strLogToken3;
    std::cout << "The log is " << UTF8::ToUTF8(log->GetPath(5'000)) << '\n';
    LibModuleManager::GetInstance()->Release(true);
}
