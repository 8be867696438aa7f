// A program that restarts itself. The first copy prints its log. The second one, identified by the
// argument "-restart", writes its command line to the file named by TOOLKIT_TEST_REPORT. With
// "-read", the first copy then prints what the second one writes.

#include "toolkit/logging/ConsoleLogger.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/RestartManagment.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string_view>

using namespace Toolkit;

namespace {

// The report is a pipe. The second copy blocks in open() until this function opens the pipe.
void PrintReport()
{
    const char* const report = std::getenv("TOOLKIT_TEST_REPORT");
    std::wifstream file(report ? report : "");
    std::wcout << file.rdbuf() << std::flush;
}

int ReportCommandLine(int argc, char** argv)
{
    const char* const report = std::getenv("TOOLKIT_TEST_REPORT");
    std::ofstream file(report ? report : "");
    for (int argument = 0; argument < argc; ++argument)
        file << argv[argument] << '\n';
    return file.flush() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && argv[1] == std::string_view("-restart"))
        return ReportCommandLine(argc, argv);

    LibModuleManager::GetInstance()->Initialize(true);
    ILogger::SetLogger(smart_ptr<ILogger>(new ConsoleLogger(SeverityInfo)));
    const bool isActivated = RestartManagment::GetInstance()->ActivateRestartProcess();
    if (argc > 1 && argv[1] == std::string_view("-read"))
        PrintReport();
    LibModuleManager::GetInstance()->Release(true);
    return isActivated ? 0 : 1;
}
