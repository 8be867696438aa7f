#include "PlugIn.h"

#include "toolkit/encoding/UTF8.h"
#include "toolkit/system/Version.h"

#include <cstdio>

using namespace Toolkit;

namespace {

void ThrowVersion()
{
    throw smart_ptr<Version>(new Version(1, 2, 3, 4));
}

void CatchVersion(void (*action)())
{
    try {
        action();
    } catch (const smart_ptr<Version>& version) {
        std::printf("plug-in caught %s\n", UTF8::ToUTF8(version->ToString()).c_str());
    }
}

} // namespace

PlugInOperations GetPlugInOperations()
{
    return {ThrowVersion, CatchVersion};
}
