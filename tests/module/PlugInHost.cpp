// Loads the plug-in named by its argument with RTLD_LOCAL. Host and plug-in each throw an exception
// that the other one catches.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/system/Version.h"

#include <cstdio>
#include <dlfcn.h>

#include "PlugIn.h"

using namespace Toolkit;

namespace {

void CatchVersionOf(const PlugInOperations& plugIn)
{
    try {
        plugIn.throwVersion();
    } catch (const smart_ptr<Version>& version) {
        std::printf("host caught %s\n", UTF8::ToUTF8(version->ToString()).c_str());
    }
}

} // namespace

int main(int argc, char** argv)
{
    void* const library = argc == 2 ? ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
    void* const symbol = library ? ::dlsym(library, "GetPlugInOperations") : nullptr;
    if (!symbol)
        return 1;

    const PlugInOperations plugIn = reinterpret_cast<PlugInOperations (*)()>(symbol)();
    CatchVersionOf(plugIn);
    plugIn.catchVersion([] { throw smart_ptr<Version>(new Version(5, 6, 7, 8)); });
    ::dlclose(library);
    return 0;
}
