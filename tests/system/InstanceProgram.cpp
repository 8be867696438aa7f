// Tests run several copies of this program concurrently. At the first line on standard input, a
// copy starts the library and prints whether another copy runs, and the program's unique name. At
// each line "fork" after that, it forks a child that outlives it, and the child prints its process
// id. At any other line or the end of the input, it stops the library and prints "stopped". It ends
// at the next line or the end of the input.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/PathManager.h"
#include "toolkit/module/LibModuleManager.h"
#include "toolkit/system/SingleApplicationInstance.h"

#include <iostream>
#include <string>
#include <unistd.h>

using namespace Toolkit;

namespace {

// The child prints, because the library's fork handlers have run in it by then.
void ForkChild()
{
    if (::fork() != 0)
        return;
    std::cout << ::getpid() << std::endl;
    constexpr unsigned int longestLifeS = 60;
    ::alarm(longestLifeS);
    for (;;)
        ::pause();
}

} // namespace

int main()
{
    std::string line;
    if (!std::getline(std::cin, line))
        return 1;
    LibModuleManager::GetInstance()->Initialize(true);

    std::cout << SingleApplicationInstance::GetInstance()->IsAlreadyRunning() << ' '
              << UTF8::ToUTF8(PathManager::GetInstance()->GetApplicationUniqueName()) << std::endl;
    while (std::getline(std::cin, line) && line == "fork")
        ForkChild();

    LibModuleManager::GetInstance()->Release(true);
    std::cout << "stopped" << std::endl;
    std::getline(std::cin, line);
    return 0;
}
