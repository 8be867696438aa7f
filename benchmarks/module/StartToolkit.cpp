// The shortest program that starts and stops Toolkit.

#include "toolkit/module/LibModuleManager.h"

int main()
{
    Toolkit::LibModuleManager::GetInstance()->Initialize(true);
    Toolkit::LibModuleManager::GetInstance()->Release(true);
    return 0;
}
