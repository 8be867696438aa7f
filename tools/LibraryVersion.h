#pragma once

#include <memory>
#include <new>
#include <string>
#include <toolkit/encoding/UTF8.h>
#include <toolkit/system/Version.h>

namespace Tool {

/// Returns the version of the library, such as "1.0.332.3". Throws std::bad_alloc when out of
/// memory.
inline std::string GetLibraryVersion()
{
    const std::unique_ptr<Toolkit::Version> version(Toolkit::Version::Create());
    if (!version)
        throw std::bad_alloc();
    return Toolkit::UTF8::ToUTF8(version->ToString());
}

} // namespace Tool
