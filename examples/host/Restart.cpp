#include "Restart.h"

#include <toolkit/files/FFile.h>
#include <toolkit/files/PathManager.h>
#include <toolkit/files/TextFile.h>
#include <toolkit/system/RestartManagment.h>

#include "HandOver.h"

using namespace Toolkit;

namespace {

Text GetSavedLinePath()
{
    const smart_ptr<PathManager> paths = PathManager::GetInstance();
    Text path;
    PathManager::AppendPath(path, paths->GetApplicationDataPath(), L"restart.txt");
    return path;
}

} // namespace

bool BeginRestart(const Text& startLine)
{
    FFile file;
    if (!file.Open(GetSavedLinePath(), L"wb"))
        return false;
    file.Write(startLine + L"\n");
    return file.Close() && RestartManagment::GetInstance()->ActivateRestartProcess();
}

Text ReadSavedLine()
{
    TextFile file;
    return file.Open(GetSavedLinePath()) ? file.GetFirstLine() : Text(c_serve);
}

// Neither call waits on the supported systems. SendToServingHost() has already waited until the old
// process released the single-instance lock.
void FinishRestart()
{
    const smart_ptr<RestartManagment> restart = RestartManagment::GetInstance();
    restart->WaitingForPreviousProcessFinish();
    restart->RestartProcessFinish();
}
