// Does not link the library. Loads a plug-in that links it, creates objects in the plug-in and
// returns from main():
//
//     ProcessEndUnlinkedHost seconds how what plug-in
//
// If `how` is "dlclose", unloads the plug-in before it returns. `what` names the objects, as in
// ProcessEndScene.h. The exit status is 7, or 1 if the plug-in cannot be used. SIGALRM kills a
// process that does not end within `seconds`.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace {

constexpr int c_status = 7;

} // namespace

int main(int argc, char** argv)
{
    if (argc < 5)
        return 1;
    ::alarm(static_cast<unsigned int>(std::atoi(argv[1])));
    void* const plugIn = ::dlopen(argv[4], RTLD_NOW | RTLD_LOCAL);
    void* const start = plugIn ? ::dlsym(plugIn, "StartLibrary") : nullptr;
    void* const scene = plugIn ? ::dlsym(plugIn, "SetUpScene") : nullptr;
    if (!start || !scene) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        return 1;
    }
    reinterpret_cast<void (*)()>(start)();
    reinterpret_cast<void (*)(const char*)>(scene)(argv[3]);
    if (std::strcmp(argv[2], "dlclose") == 0)
        ::dlclose(plugIn);
    return c_status;
}
